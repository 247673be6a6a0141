#include "DicomTestSupport.h"
#include "support/QuiltraTestSupport.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

#include <quiltra/core/TagInfo.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>

namespace {

using Quiltra::TagId;
using QuiltraTest::hex;
using QuiltraTest::readSample;
using QuiltraTest::valueBytes;

std::shared_ptr<const Quiltra::Tag> get(const Quiltra::Tree& tree, unsigned id) {
  auto tag = tree.getTag(TagId(id));
  EXPECT_TRUE(tag) << TagId(id).toString();
  return tag ? tag : std::make_shared<Quiltra::Tag>();
}

const std::vector<std::string> kUncompressed = {
    "explicit-le.dcm",      "implicit-le.dcm",           "explicit-be.dcm",
    "deflated.dcm",         "explicit-le-undefined.dcm", "implicit-le-undefined.dcm",
    "no-meta-implicit.dcm", "no-meta-explicit.dcm"};

TEST(DicomReadTest, ReadsTheElementsOfTheSampleFile) {
  auto content = readSample("explicit-le.dcm");
  const Quiltra::Tree& tree = *content.tree;
  EXPECT_EQ(content.syntax, Quiltra::EXPLICIT_LITTLE_ENDIAN);
  EXPECT_TRUE(content.hadMeta);
  EXPECT_EQ(get(tree, 0x00020010)->toString(0), "1.2.840.10008.1.2.1");
  EXPECT_EQ(get(tree, 0x00100010)->toString(), "Mueller^Hans");
  EXPECT_EQ(get(tree, 0x00080008)->numberOfValues(), 3u);
  EXPECT_EQ(get(tree, 0x00080008)->toString(2), "AXIAL");
  EXPECT_EQ(get(tree, 0x00080018)->toString(0), "1.2.826.0.1.3680043.2.1143.4711.1");
  EXPECT_EQ(get(tree, 0x00080018)->getValueSize(0), 34u);  // padding gone, closing zero added
  EXPECT_EQ(get(tree, 0x00200032)->numberOfValues(), 3u);
  EXPECT_FLOAT_EQ(get(tree, 0x00200032)->toFloat(1), -120.0f);
  EXPECT_EQ(get(tree, 0x00204000)->numberOfValues(), 1u);  // LT is never split
  EXPECT_EQ(get(tree, 0x00204000)->toString(0), "first line\\second half");
  EXPECT_EQ(get(tree, 0x00280010)->toUShort(0), 4);
  EXPECT_EQ(get(tree, 0x00189219)->toShort(0), -12);
  EXPECT_EQ(get(tree, 0x0040A162)->toInt(0), -70000);
  EXPECT_EQ(get(tree, 0x00209057)->toUInt(0), 4000000000u);
  EXPECT_FLOAT_EQ(get(tree, 0x00209241)->toFloat(0), 0.75f);
  EXPECT_DOUBLE_EQ(get(tree, 0x00189087)->toDouble(0), 1000.5);
  EXPECT_EQ(get(tree, 0x00280009)->toString(0), "(0018,1063)");
  EXPECT_EQ(valueBytes(tree, 0x00091002), hex("01 02 03 00"));
  EXPECT_EQ(get(tree, 0x00091001)->toString(0), "private text");

  auto pixels = get(tree, 0x7FE00010);
  EXPECT_EQ(pixels->info().vr(), Quiltra::OW);
  ASSERT_EQ(pixels->numberOfValues(), 1u);
  EXPECT_EQ(valueBytes(tree, 0x7FE00010).size(), 32u);
  EXPECT_EQ(valueBytes(tree, 0x7FE00010)[2], 0x01);  // 0001 little endian

  auto references = get(tree, 0x00081140);
  ASSERT_EQ(references->numberOfSequenceItems(), 2u);
  EXPECT_EQ(get(*references->sequenceItems()[1], 0x00081155)->toString(0), "1.2.3.4.6");
  EXPECT_EQ(get(tree, 0x00082112)->numberOfSequenceItems(), 0u);
  auto content2 = get(tree, 0x0040A730)->sequenceItems().at(0);
  auto measured = get(*content2, 0x0040A300)->sequenceItems().at(0);
  EXPECT_DOUBLE_EQ(get(*measured, 0x0040A161)->toDouble(0), 2.25);
}

// Every uncompressed file holds the same data set: each standard element equals the one read
// from the explicit little endian file, and private ones keep their bytes.
TEST(DicomReadTest, ReadsEveryUncompressedSyntaxAlike) {
  auto reference = readSample("explicit-le.dcm").tree;
  const std::map<std::string, Quiltra::TransferSyntax> syntaxes = {
      {"explicit-le.dcm", Quiltra::EXPLICIT_LITTLE_ENDIAN},
      {"implicit-le.dcm", Quiltra::IMPLICIT_LITTLE_ENDIAN},
      {"explicit-be.dcm", Quiltra::EXPLICIT_BIG_ENDIAN},
      {"deflated.dcm", Quiltra::DEFLATED_EXPLICIT_LITTLE_ENDIAN},
      {"explicit-le-undefined.dcm", Quiltra::EXPLICIT_LITTLE_ENDIAN},
      {"implicit-le-undefined.dcm", Quiltra::IMPLICIT_LITTLE_ENDIAN},
      {"no-meta-implicit.dcm", Quiltra::IMPLICIT_LITTLE_ENDIAN},
      {"no-meta-explicit.dcm", Quiltra::EXPLICIT_LITTLE_ENDIAN}};
  for (const std::string& name : kUncompressed) {
    SCOPED_TRACE(name);
    auto content = readSample(name);
    EXPECT_EQ(content.syntax, syntaxes.at(name));
    EXPECT_EQ(content.hadMeta, name.rfind("no-meta", 0) != 0);
    for (const auto& entry : reference->tags()) {
      const unsigned id = entry.first.rawId();
      if ((id >> 16) == 0x0002 || (id >> 16) == 0x0009) continue;
      auto tag = content.tree->getTag(entry.first);
      ASSERT_TRUE(tag) << entry.first.toString();
      EXPECT_EQ(tag->info().vr(), entry.second->info().vr()) << entry.first.toString();
      EXPECT_TRUE(tag->isEqual(*entry.second, 0.0)) << entry.first.toString();
    }
    EXPECT_EQ(valueBytes(*content.tree, 0x00091002), hex("01 02 03 00"));
    // A private sequence unknown to the dictionary is still read as a sequence.
    auto privateSequence = get(*content.tree, 0x00091003);
    EXPECT_EQ(privateSequence->info().vr(), Quiltra::SQ);
    ASSERT_EQ(privateSequence->numberOfSequenceItems(), 1u);
    EXPECT_EQ(valueBytes(*privateSequence->sequenceItems()[0], 0x00091004), hex("07 00"));
  }
}

TEST(DicomReadTest, KeepsEncapsulatedFragmentsAsValues) {
  auto content = readSample("rle.dcm");
  EXPECT_EQ(content.syntax, Quiltra::RLE);
  auto pixels = get(*content.tree, 0x7FE00010);
  EXPECT_EQ(pixels->info().vr(), Quiltra::OB);
  ASSERT_EQ(pixels->numberOfValues(), 2u);
  EXPECT_EQ(valueBytes(*content.tree, 0x7FE00010, 0), hex("00 00 00 00"));  // offset table
  EXPECT_EQ(pixels->getValueSize(1), 92u);
  EXPECT_EQ(valueBytes(*content.tree, 0x7FE00010, 1)[0], 0x02);  // two RLE segments
}

// A selection that leaves out pixel data and a sequence: neither is stored, and the
// elements after them are read as usual, for defined and undefined lengths alike.
TEST(DicomReadTest, SkipsElementsTheFilterLeavesOut) {
  for (const char* name : {"explicit-le.dcm", "implicit-le-undefined.dcm", "rle.dcm"}) {
    SCOPED_TRACE(name);
    std::set<unsigned> offered;
    auto options = QuiltraTest::sampleOptions();
    options.filter = [&](const Quiltra::TagInfo& info) {
      offered.insert(info.id().rawId());
      return info.id().rawId() != 0x7FE00010 && info.id().rawId() != 0x0040A730 &&
             info.id().rawId() != 0x00081155;
    };
    auto content = Quiltra_DicomFile::readDicomFile(QuiltraTest::dicomTestFile(name), options);
    EXPECT_FALSE(content.tree->hasTag(TagId(0x7FE00010)));
    EXPECT_FALSE(content.tree->hasTag(TagId(0x0040A730)));
    EXPECT_TRUE(offered.count(0x7FE00010));
    EXPECT_FALSE(offered.count(0x0040A010));  // inside the skipped sequence: never looked at
    auto references = get(*content.tree, 0x00081140);
    ASSERT_EQ(references->numberOfSequenceItems(), 2u);
    EXPECT_FALSE(references->sequenceItems()[0]->hasTag(TagId(0x00081155)));
    EXPECT_TRUE(references->sequenceItems()[0]->hasTag(TagId(0x00081150)));
    EXPECT_TRUE(content.tree->hasTag(TagId(0x00281101)));
  }
}

TEST(DicomReadTest, ReadsImplicitElementsUnknownToTheDictionaryAsUn) {
  Quiltra_DicomFile::ReadOptions noDict;
  auto content =
      Quiltra_DicomFile::readDicomFile(QuiltraTest::dicomTestFile("implicit-le.dcm"), noDict);
  auto rows = get(*content.tree, 0x00280010);
  EXPECT_EQ(rows->info().vr(), Quiltra::UN);
  EXPECT_EQ(valueBytes(*content.tree, 0x00280010), hex("04 00"));
  EXPECT_EQ(get(*content.tree, 0x00090010)->info().vr(), Quiltra::LO);  // private creator
  // Sequences of defined length are still found by their content.
  EXPECT_EQ(get(*content.tree, 0x00081140)->numberOfSequenceItems(), 2u);
}

}  // namespace
