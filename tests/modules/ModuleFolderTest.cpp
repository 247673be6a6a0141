#include <gtest/gtest.h>
#include <memory>

#include <quiltra/dataset/Dict.h>
#include <quiltra/io/ModuleDirectoryDelegate.h>
#include <quiltra/io/Reader.h>
#include <quiltra/io/Writer.h>

// What a host gets from the two lines of the README: every module of the build tree's
// module folder loaded and registered.
TEST(ModuleFolderTest, DefaultDelegateRegistersTheDictionaryReaderAndWriter) {
  Quiltra_Utils::ModuleDirectoryDelegate modules;
  const auto dict = Quiltra::Dict::singleton(&modules);
  ASSERT_NE(dict, nullptr);
  EXPECT_EQ(dict->tagId("PatientName"), Quiltra::TagId(0x0010, 0x0010));
  EXPECT_NE(Quiltra::Reader::create(dict), nullptr);
  EXPECT_NE(Quiltra::Writer::create(dict), nullptr);
}
