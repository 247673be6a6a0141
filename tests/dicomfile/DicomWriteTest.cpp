#include "DicomTestSupport.h"
#include "support/QuiltraTestSupport.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>

namespace {

using Quiltra::TagId;
using QuiltraTest::fileBytes;
using QuiltraTest::hex;
using QuiltraTest::readBytes;
using QuiltraTest::readSample;
using namespace Quiltra_DicomFile;

std::vector<unsigned char> write(const Quiltra::Tree& tree, Quiltra::TransferSyntax syntax) {
  return writeDicomBytes(tree, syntax, WriteOptions());
}

std::vector<unsigned char> body(const std::vector<unsigned char>& file) {
  return std::vector<unsigned char>(file.begin() + QuiltraTest::dataSetOffset(file), file.end());
}

std::shared_ptr<Quiltra::Tag> element(unsigned id, Quiltra::Vr vr) {
  return std::make_shared<Quiltra::Tag>(Quiltra::TagInfo(TagId(id), "", vr, {1, 1}));
}

// The elements of both trees outside the meta group are equal, items and all.
void expectSameDataSet(const Quiltra::Tree& expected, const Quiltra::Tree& actual) {
  for (const auto& entry : expected.constTags()) {
    if ((entry.first.rawId() >> 16) == 0x0002) continue;
    auto tag = actual.getTag(entry.first);
    ASSERT_TRUE(tag) << entry.first.toString();
    EXPECT_EQ(tag->info().vr(), entry.second->info().vr()) << entry.first.toString();
    EXPECT_TRUE(tag->isEqual(*entry.second, 0.0)) << entry.first.toString();
  }
  for (const auto& entry : actual.constTags()) {
    if ((entry.first.rawId() >> 16) != 0x0002) {
      EXPECT_TRUE(expected.hasTag(entry.first)) << entry.first.toString();
    }
  }
}

TEST(DicomWriteTest, WritesTheDataSetOfACanonicalFileByteForByte) {
  for (const char* name : {"explicit-le.dcm", "rle.dcm"}) {
    SCOPED_TRACE(name);
    auto content = readSample(name);
    const auto original = fileBytes(QuiltraTest::dicomTestFile(name));
    const auto written = write(*content.tree, content.syntax);
    EXPECT_EQ(body(written), body(original));
    // And what this module writes, it reads and writes again to the same bytes.
    auto again = readBytes(written);
    EXPECT_EQ(write(*again.tree, again.syntax), written);
  }
}

TEST(DicomWriteTest, RoundTripsEveryUncompressedSyntax) {
  auto reference = readSample("explicit-le.dcm").tree;
  for (auto syntax : {Quiltra::IMPLICIT_LITTLE_ENDIAN, Quiltra::EXPLICIT_LITTLE_ENDIAN,
                      Quiltra::EXPLICIT_BIG_ENDIAN, Quiltra::DEFLATED_EXPLICIT_LITTLE_ENDIAN}) {
    SCOPED_TRACE(Quiltra::toString(syntax));
    const auto bytes = write(*reference, syntax);
    auto back = readBytes(bytes);
    EXPECT_EQ(back.syntax, syntax);
    if (syntax == Quiltra::IMPLICIT_LITTLE_ENDIAN) continue;  // private VRs become UN
    expectSameDataSet(*reference, *back.tree);
  }
}

TEST(DicomWriteTest, WritesTheMetaGroupFromTheDataSet) {
  Quiltra::Tree tree;
  auto sopClass = element(0x00080016, Quiltra::UI);
  sopClass->addValue(std::string("1.2.3"));
  tree.addTag(sopClass);
  auto sopInstance = element(0x00080018, Quiltra::UI);
  sopInstance->addValue(std::string("1.2.3.4"));
  tree.addTag(sopInstance);
  const auto bytes = write(tree, Quiltra::EXPLICIT_BIG_ENDIAN);
  EXPECT_EQ(std::string(bytes.begin() + 128, bytes.begin() + 132), "DICM");
  auto back = readBytes(bytes);
  const Quiltra::Tree& meta = *back.tree;
  EXPECT_EQ(meta.getTag(TagId(0x00020002))->toString(0), "1.2.3");
  EXPECT_EQ(meta.getTag(TagId(0x00020003))->toString(0), "1.2.3.4");
  EXPECT_EQ(meta.getTag(TagId(0x00020010))->toString(0), "1.2.840.10008.1.2.2");
  EXPECT_EQ(meta.getTag(TagId(0x00020012))->toString(0), kImplementationUid);
  EXPECT_EQ(meta.getTag(TagId(0x00020013))->toString(0), kImplementationVersion);
  EXPECT_EQ(QuiltraTest::valueBytes(meta, 0x00020001), hex("00 01"));
  // The group length counts exactly the meta elements after it.
  const std::size_t start = QuiltraTest::dataSetOffset(bytes);
  EXPECT_EQ(bytes[start], 0x00);  // big endian group 0008
  EXPECT_EQ(bytes[start + 1], 0x08);
}

// Group 0200 in big endian is spelt "02 00", as group 0002 is in little endian: the data
// set must start where the meta group's length says, not where group 0002 seems to end.
TEST(DicomWriteTest, ReadsBackABigEndianDataSetWhoseFirstGroupLooksLikeTheMeta) {
  Quiltra::Tree tree;
  auto first = element(0x0200FEFF, Quiltra::UN);
  first->addValue().setData(4, hex("01 02 03 04").data());
  tree.addTag(first);
  const auto bytes = write(tree, Quiltra::EXPLICIT_BIG_ENDIAN);
  ASSERT_EQ(body(bytes), hex("02 00 fe ff 55 4e 00 00 00 00 00 04 01 02 03 04"));
  auto back = readBytes(bytes);
  EXPECT_EQ(back.syntax, Quiltra::EXPLICIT_BIG_ENDIAN);
  EXPECT_FALSE(back.tree->hasTag(TagId(0x0002FFFE)));
  expectSameDataSet(tree, *back.tree);
}

TEST(DicomWriteTest, PadsEachRepresentationToAnEvenLength) {
  Quiltra::Tree tree;
  auto uid = element(0x00080018, Quiltra::UI);
  uid->addValue(std::string("1.2.3"));
  tree.addTag(uid);
  auto text = element(0x00100010, Quiltra::PN);
  text->addValue(std::string("A\\BC"));
  tree.addTag(text);
  auto bytes = element(0x00091002, Quiltra::OB);
  bytes->addValue().setData(3, hex("01 02 03").data());
  tree.addTag(bytes);
  auto numbers = element(0x00280010, Quiltra::US);
  numbers->addValue(static_cast<unsigned short>(0x0102));
  numbers->addValue(static_cast<unsigned short>(0x0304));
  tree.addTag(numbers);
  const auto file = write(tree, Quiltra::EXPLICIT_LITTLE_ENDIAN);
  EXPECT_EQ(body(file), hex("08 00 18 00 55 49 06 00 31 2e 32 2e 33 00 "
                            "09 00 02 10 4f 42 00 00 04 00 00 00 01 02 03 00 "
                            "10 00 10 00 50 4e 04 00 41 5c 42 43 "
                            "28 00 10 00 55 53 04 00 02 01 04 03"));
  const auto big = write(tree, Quiltra::EXPLICIT_BIG_ENDIAN);
  EXPECT_EQ(std::vector<unsigned char>(big.end() - 12, big.end()),
            hex("00 28 00 10 55 53 00 04 01 02 03 04"));
}

// The newer representations come back as they were written: UR and OD by their tags,
// UC likewise; the library holds them as UT, OB and LO.
TEST(DicomWriteTest, WritesMappedRepresentationsUnderTheirOwnName) {
  const auto bytes =
      hex("08 00 19 01 55 43 00 00 02 00 00 00 41 20 "
          "08 00 20 01 55 52 00 00 06 00 00 00 75 72 6e 3a 78 20 "
          "e0 7f 09 00 4f 44 00 00 08 00 00 00 00 00 00 00 00 00 f0 3f");
  auto content = readBytes(bytes);
  EXPECT_EQ(content.syntax, Quiltra::EXPLICIT_LITTLE_ENDIAN);
  EXPECT_EQ(content.tree->getTag(TagId(0x00080119))->info().vr(), Quiltra::LO);
  EXPECT_EQ(content.tree->getTag(TagId(0x00080120))->info().vr(), Quiltra::UT);
  EXPECT_EQ(content.tree->getTag(TagId(0x00080120))->toString(0), "urn:x");
  EXPECT_EQ(content.tree->getTag(TagId(0x7FE00009))->info().vr(), Quiltra::OB);
  EXPECT_EQ(body(write(*content.tree, Quiltra::EXPLICIT_LITTLE_ENDIAN)), bytes);
  // In big endian order the doubles of OD swap as 8-byte units.
  const auto big = write(*content.tree, Quiltra::EXPLICIT_BIG_ENDIAN);
  EXPECT_EQ(std::vector<unsigned char>(big.end() - 8, big.end()), hex("3f f0 00 00 00 00 00 00"));
  expectSameDataSet(*content.tree, *readBytes(big).tree);
}

// A layer over a data set, with overrides, deletions, a new element and a layered
// sequence item, is written exactly as its flattened view.
TEST(DicomWriteTest, WritesALayeredTreeAsItsMergedView) {
  auto root = readSample("explicit-le.dcm").tree;
  auto child = std::make_shared<Quiltra::Tree>(root);
  auto name = element(0x00100010, Quiltra::PN);
  name->addValue(std::string("Layer^Name"));
  child->addTag(name);
  child->removeTag(TagId(0x00080060));
  child->removeTag(TagId(0x00100020));
  auto extra = element(0x00204000, Quiltra::LT);
  extra->addValue(std::string("only in the layer"));
  child->addTag(extra);
  auto item = child->layerSequenceItem({{TagId(0x00081140), 0}});
  item->removeTag(TagId(0x00081150));
  ASSERT_NE(root->getTag(TagId(0x00080060)), nullptr);
  for (auto syntax : {Quiltra::IMPLICIT_LITTLE_ENDIAN, Quiltra::EXPLICIT_BIG_ENDIAN}) {
    SCOPED_TRACE(Quiltra::toString(syntax));
    const auto bytes = write(*child, syntax);
    EXPECT_EQ(bytes, write(*child->mergedCopy(Quiltra::AllLayers), syntax));
    EXPECT_NE(bytes, write(*root, syntax));
  }
}

// Each item's length is measured once, ahead of the writing, and taken in the order the
// writer meets the items: sequences side by side and inside items, an item held twice, and an
// item shared by two sequences must each get their own length.
TEST(DicomWriteTest, GivesEveryItemItsOwnLengthWhereverItSits) {
  auto leaf = std::make_shared<Quiltra::Tree>();
  auto text = element(0x00100010, Quiltra::PN);
  text->addValue(std::string("Leaf^Item"));
  leaf->addTag(text);
  auto inner = element(0x00081115, Quiltra::SQ);
  inner->addSequenceItem(leaf);
  inner->addSequenceItem(std::make_shared<Quiltra::Tree>());
  auto middle = std::make_shared<Quiltra::Tree>();
  middle->addTag(inner);
  auto outer = element(0x00081140, Quiltra::SQ);
  outer->addSequenceItem(middle);
  outer->addSequenceItem(leaf);
  outer->addSequenceItem(middle);
  auto second = element(0x00081199, Quiltra::SQ);
  second->addSequenceItem(leaf);
  Quiltra::Tree tree;
  tree.addTag(outer);
  tree.addTag(second);
  for (auto syntax : {Quiltra::EXPLICIT_LITTLE_ENDIAN, Quiltra::IMPLICIT_LITTLE_ENDIAN}) {
    SCOPED_TRACE(Quiltra::toString(syntax));
    const auto bytes = write(tree, syntax);
    EXPECT_EQ(bytes, write(*tree.mergedCopy(Quiltra::AllLayers), syntax));  // no sharing
    const auto back = readBytes(bytes).tree;
    expectSameDataSet(tree, *back);
    EXPECT_EQ(write(*back, syntax), bytes);
  }
}

TEST(DicomWriteTest, RefusesWhatAFileCannotHold) {
  Quiltra::Tree tree;
  QuiltraTest::expectQuiltraError([&] { write(tree, Quiltra::IMPLICIT_BIG_ENDIAN); },
                                  "DicomFile::write",
                                  "no file encoding for transfer syntax IMPLICIT_BIG_ENDIAN");
  auto content = readSample("rle.dcm");
  QuiltraTest::expectQuiltraError([&] { write(*content.tree, Quiltra::EXPLICIT_LITTLE_ENDIAN); },
                                  "DicomFile::write",
                                  "pixel data fragments need an encapsulated transfer syntax");
}

}  // namespace
