#include "DicomFileIO.h"
#include "DicomTestSupport.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include <quiltra/dataset/Message.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>
#include <quiltra/io/IOParameter.h>
#include <quiltra/io/Reader.h>
#include <quiltra/io/Writer.h>

namespace {

using Quiltra::TagId;

// A selection whose concrete part does nothing: only the lists and bounds matter.
class Selection : public Quiltra::IOParameter {
 public:
  std::string text() const override { return {}; }
  bool firstFlag() const override { return false; }
  bool secondFlag() const override { return false; }
  bool thirdFlag() const override { return false; }
  std::shared_ptr<Quiltra::IOParameter> createInstance(const std::string&, bool, bool,
                                                       bool) const override {
    return std::make_shared<Selection>();
  }
};

class DicomFileIOTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    Quiltra_DicomFile::DicomFileReader::registerPrototype();
    Quiltra_DicomFile::DicomFileWriter::registerPrototype();
  }
  void TearDown() override { std::remove(_path.c_str()); }
  std::string _path = ::testing::TempDir() + "DicomFileIOTest.dcm";
};

TEST_F(DicomFileIOTest, ReadsThroughTheRegisteredReaderWithSelectionAndCharacterSet) {
  auto dict = std::make_shared<QuiltraTest::SampleDict>();
  auto reader = Quiltra::Reader::create(dict);
  auto selection = std::make_shared<Selection>();
  selection->tag_Ids_ToIgnore().push_back(TagId(0x7FE00010));
  auto message = reader->readFile(QuiltraTest::dicomTestFile("implicit-le.dcm"), selection);
  EXPECT_EQ(message->syntax(), Quiltra::IMPLICIT_LITTLE_ENDIAN);
  EXPECT_EQ(message->specificCharacterSet(), "ISO_IR 100");
  EXPECT_FALSE(message->tags()->hasTag(TagId(0x7FE00010)));
  EXPECT_EQ(message->tags()->getTag(TagId(0x00280010))->toUShort(0), 4);  // VR from dict

  auto plain = reader->readFile(QuiltraTest::dicomTestFile("no-meta-explicit.dcm"), nullptr);
  EXPECT_TRUE(plain->tags()->hasTag(TagId(0x7FE00010)));
  plain->tags()->removeTag(TagId(0x00080005));
  auto again = Quiltra::Writer::create(dict);
  again->writeFile(_path, nullptr, plain);
  EXPECT_EQ(reader->readFile(_path, nullptr)->specificCharacterSet(), "ISO_IR 6");
}

TEST_F(DicomFileIOTest, WritesThroughTheRegisteredWriterInTheMessageSyntax) {
  auto dict = std::make_shared<QuiltraTest::SampleDict>();
  auto read = Quiltra::Reader::create(dict)->readFile(QuiltraTest::dicomTestFile("explicit-le.dcm"),
                                                      nullptr);
  auto message = std::make_shared<Quiltra::Message>("ISO_IR 100", Quiltra::EXPLICIT_BIG_ENDIAN);
  message->setTags(read->tags());
  auto selection = std::make_shared<Selection>();
  selection->vrs_ToIgnore().push_back(Quiltra::SQ);
  Quiltra::Writer::create(dict)->writeFile(_path, selection, message);

  auto back = Quiltra::Reader::create(dict)->readFile(_path, nullptr);
  EXPECT_EQ(back->syntax(), Quiltra::EXPLICIT_BIG_ENDIAN);
  EXPECT_FALSE(back->tags()->hasTag(TagId(0x00081140)));
  EXPECT_EQ(back->tags()->getTag(TagId(0x00100010))->toString(0), "Mueller^Hans");
  EXPECT_TRUE(back->tags()
                  ->getTag(TagId(0x7FE00010))
                  ->isEqual(*read->tags()->getTag(TagId(0x7FE00010)), 0.0));
}

}  // namespace
