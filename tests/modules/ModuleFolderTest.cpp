#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include <quiltra/dataset/Dict.h>
#include <quiltra/io/ModuleDirectoryDelegate.h>
#include <quiltra/io/Reader.h>
#include <quiltra/io/TextDump.h>
#include <quiltra/io/Writer.h>

using Quiltra_Utils::ModuleDirectoryDelegate;

// What a host gets from the two lines of the README: every module of the build tree's
// module folder loaded and registered.
TEST(ModuleFolderTest, DefaultDelegateRegistersTheDictionaryReaderAndWriter) {
  ModuleDirectoryDelegate modules;
  const auto dict = Quiltra::Dict::singleton(&modules);
  ASSERT_NE(dict, nullptr);
  EXPECT_EQ(dict->tagId("PatientName"), Quiltra::TagId(0x0010, 0x0010));
  EXPECT_NE(Quiltra::Reader::create(dict), nullptr);
  // Both the DICOM file and the dump-writer module register a writer; "dumpwriter" loads last.
  EXPECT_NE(std::dynamic_pointer_cast<Quiltra::TextDump>(Quiltra::Writer::create(dict)), nullptr);
  const std::vector<std::string> names = {"dicomfile", "dictionary", "dumpwriter"};
  const auto loaded = ModuleDirectoryDelegate::loadedModules();
  for (const std::string& name : names) {
    EXPECT_EQ(std::count(loaded.begin(), loaded.end(), name), 1) << name;
  }
}

// Two modules register a Writer: the last in name order wins, and a host picks by name.
TEST(ModuleFolderTest, DumpWriterWinsByDefaultAndTheHostPicksTheDicomWriterByName) {
  ModuleDirectoryDelegate modules;
  const auto dict = Quiltra::Dict::singleton(&modules);
  ASSERT_NE(dict, nullptr);
  ModuleDirectoryDelegate::registerModule("dumpwriter");  // as after loading the folder
  EXPECT_NE(std::dynamic_pointer_cast<Quiltra::TextDump>(Quiltra::Writer::create(dict)), nullptr);
  ModuleDirectoryDelegate::registerModule("dicomfile");
  const auto dicom = Quiltra::Writer::create(dict);
  ASSERT_NE(dicom, nullptr);
  EXPECT_EQ(std::dynamic_pointer_cast<Quiltra::Dump>(dicom), nullptr);
  ModuleDirectoryDelegate::registerModule("dumpwriter");
  EXPECT_NE(std::dynamic_pointer_cast<Quiltra::TextDump>(Quiltra::Writer::create(dict)), nullptr);
}
