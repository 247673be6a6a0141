#include "support/QuiltraTestSupport.h"
#include "support/TestDict.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <initializer_list>
#include <iostream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>

#include <quiltra/core/Multiplicity.h>
#include <quiltra/dataset/Message.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>
#include <quiltra/io/TextDump.h>

using namespace Quiltra;
using QuiltraTest::expectQuiltraError;

namespace {

std::shared_ptr<Tag> element(unsigned short group, unsigned short number, const std::string& name,
                             Vr vr, Multiplicity multiplicity = {1, 1}) {
  return std::make_shared<Tag>(TagInfo(TagId(group, number), name, vr, multiplicity));
}

std::shared_ptr<Tag> text(unsigned short group, unsigned short number, const std::string& name,
                          Vr vr, const std::string& values) {
  auto tag = element(group, number, name, vr);
  tag->addValue(values);
  return tag;
}

std::shared_ptr<Tag> raw(unsigned short group, unsigned short number, const std::string& name,
                         Vr vr, const std::string& hexBytes) {
  auto tag = element(group, number, name, vr);
  const auto bytes = QuiltraTest::hex(hexBytes);
  tag->addValue().setData(static_cast<unsigned int>(bytes.size()), bytes.data());
  return tag;
}

std::shared_ptr<Tree> treeOf(std::initializer_list<std::shared_ptr<Tag>> tags) {
  auto tree = std::make_shared<Tree>();
  for (const auto& tag : tags) tree->addTag(tag);
  return tree;
}

std::shared_ptr<Message> messageOf(std::shared_ptr<Tree> tree,
                                   const std::string& characterSet = "ISO_IR 100") {
  auto message = std::make_shared<Message>(characterSet, EXPLICIT_LITTLE_ENDIAN);
  message->setTags(std::move(tree));
  return message;
}

// A dictionary whose lookup of (0011,0011) fails with something other than Exception.
class BrokenDict : public QuiltraTest::TestDict {
 public:
  TagInfo tagInfo(const TagId& id) const override {
    if (id == TagId(0x0011, 0x0011)) throw std::runtime_error("broken");
    return TestDict::tagInfo(id);
  }
  using TestDict::tagInfo;
};

class DumpTest : public ::testing::Test {
 protected:
  std::string dumpOf(const std::shared_ptr<Message>& message,
                     std::shared_ptr<const Dict> dictionary) {
    std::ostringstream out;
    TextDump(std::move(dictionary), out).write(nullptr, message);
    return out.str();
  }
  std::string dumpOf(const std::shared_ptr<Tree>& tree) { return dumpOf(messageOf(tree), dict); }

  const std::shared_ptr<const Dict> dict = std::make_shared<QuiltraTest::TestDict>();
};

}  // namespace

TEST_F(DumpTest, PrintsHeaderAttributesValuesAndItemsLineForLine) {
  auto sequence = element(0x0008, 0x1140, "ReferencedImageSequence", SQ, {1, 0xFFFFFFFFu});
  sequence->addSequenceItem(treeOf({text(0x0008, 0x1150, "ReferencedSOPClassUID", UI, "1.2.3")}));
  EXPECT_EQ(dumpOf(treeOf({text(0x0008, 0x0060, "Modality", CS, "MR"), sequence})),
            "Transfer Syntax: Syntax 2 EXPLICIT_LITTLE_ENDIAN\n"
            "Specific Character Set: ISO_IR 100\n"
            "(0008,0060) VR: CS VM: 1-1 Modality\n"
            "   1: 'MR'\n"
            "(0008,1140) VR: SQ VM: 1-4294967295 ReferencedImageSequence\n"
            "   <<< 1\n"
            "      (0008,1150) VR: UI VM: 1-1 ReferencedSOPClassUID\n"
            "         1: '1.2.3'\n"
            "   >>> 1\n");
}

TEST_F(DumpTest, PrintsEachValueByTheFirstMatchingClass) {
  auto nulls = text(0x0019, 0x1001, "Texts", CS, "A\\");  // "A" and an empty text
  nulls->addValue();                                      // null
  nulls->addValue(std::string("C"));
  auto noValues = element(0x0019, 0x1002, "Empty", LO);
  auto numbers = element(0x0019, 0x1003, "Unsigned", US);
  numbers->addValue(static_cast<unsigned short>(512));
  numbers->addValue();  // null
  auto unsignedLong = element(0x0019, 0x1004, "UnsignedLong", UL);
  unsignedLong->addValue(4000000000u);
  auto signedShort = element(0x0019, 0x1005, "SignedShort", SS);
  signedShort->addValue(static_cast<short>(-5));
  auto signedLong = element(0x0019, 0x1006, "SignedLong", SL);
  signedLong->addValue(-70000);
  auto single = element(0x0019, 0x1007, "Single", FL);
  single->addValue(0.1f);
  auto doubles = element(0x0019, 0x1008, "Double", FD);
  doubles->addValue(123456789.0);
  doubles->addValue(1e-7);
  doubles->addValue(-2.5);
  auto bytes = raw(0x0019, 0x1009, "Bytes", OB, "01 02 03");
  bytes->addValue();  // null
  EXPECT_EQ(dumpOf(treeOf({nulls, noValues, numbers, unsignedLong, signedShort, signedLong, single,
                           doubles, bytes, raw(0x0019, 0x100A, "Words", OW, "01 02"),
                           raw(0x0019, 0x100B, "Longs", OL, "01 02 03 04"),
                           raw(0x0019, 0x100C, "Unknown", UN, "41 42"),
                           raw(0x0019, 0x100D, "Pointer", AT, "28 00 10 00"),
                           text(0x0019, 0x100E, "Integer", IS, "-42"),
                           text(0x0019, 0x100F, "Decimal", DS, "1.50"),
                           text(0x0019, 0x1010, "Comment", LT, "a\\b c"),
                           text(0x0019, 0x1011, "Date", DA, "20231117")})),
            "Transfer Syntax: Syntax 2 EXPLICIT_LITTLE_ENDIAN\n"
            "Specific Character Set: ISO_IR 100\n"
            "(0019,1001) VR: CS VM: 1-1 Texts\n"
            "   1: 'A'\n"
            "   2: ''\n"
            "   3: NULL\n"
            "   4: 'C'\n"
            "(0019,1002) VR: LO VM: 1-1 Empty\n"
            "(0019,1003) VR: US VM: 1-1 Unsigned\n"
            "   1: 512\n"
            "   2: NULL\n"
            "(0019,1004) VR: UL VM: 1-1 UnsignedLong\n"
            "   1: 4000000000\n"
            "(0019,1005) VR: SS VM: 1-1 SignedShort\n"
            "   1: -5\n"
            "(0019,1006) VR: SL VM: 1-1 SignedLong\n"
            "   1: -70000\n"
            "(0019,1007) VR: FL VM: 1-1 Single\n"
            "   1: 0.1\n"
            "(0019,1008) VR: FD VM: 1-1 Double\n"
            "   1: 1.23457e+08\n"
            "   2: 1e-07\n"
            "   3: -2.5\n"
            "(0019,1009) VR: OB VM: 1-1 Bytes\n"
            "   1: !\n"
            "   2: NULL\n"
            "(0019,100a) VR: OW VM: 1-1 Words\n"
            "   1: !\n"
            "(0019,100b) VR: OL VM: 1-1 Longs\n"
            "   1: !\n"
            "(0019,100c) VR: UN VM: 1-1 Unknown\n"
            "   1: !\n"
            "(0019,100d) VR: AT VM: 1-1 Pointer\n"
            "   1: 1048616\n"
            "(0019,100e) VR: IS VM: 1-1 Integer\n"
            "   1: '-42'\n"
            "(0019,100f) VR: DS VM: 1-1 Decimal\n"
            "   1: '1.50'\n"
            "(0019,1010) VR: LT VM: 1-1 Comment\n"
            "   1: 'a\\b c'\n"
            "(0019,1011) VR: DA VM: 1-1 Date\n"
            "   1: '20231117'\n");
}

TEST_F(DumpTest, NestsSequencesTwoLevelsDeeperPerItem) {
  auto inner = element(0x0040, 0xA730, "ContentSequence", SQ);
  inner->addSequenceItem(treeOf({text(0x0010, 0x0020, "PatientID", LO, "P1")}));
  inner->addSequenceItem(std::shared_ptr<Tree>());  // an empty slot: brackets only
  auto outer = element(0x0008, 0x1140, "ReferencedImageSequence", SQ);
  outer->addSequenceItem(treeOf({inner, element(0x0008, 0x1199, "EmptySequence", SQ)}));
  outer->addSequenceItem(treeOf({}));
  auto tree = treeOf({outer, text(0x0008, 0x0005, "SpecificCharacterSet", CS, "ISO_IR 192")});
  // The character set is learnt from (0008,0005) when the message does not know it.
  EXPECT_EQ(dumpOf(messageOf(tree, ""), dict),
            "Transfer Syntax: Syntax 2 EXPLICIT_LITTLE_ENDIAN\n"
            "Specific Character Set: ISO_IR 192\n"
            "(0008,0005) VR: CS VM: 1-1 SpecificCharacterSet\n"
            "   1: 'ISO_IR 192'\n"
            "(0008,1140) VR: SQ VM: 1-1 ReferencedImageSequence\n"
            "   <<< 1\n"
            "      (0008,1199) VR: SQ VM: 1-1 EmptySequence\n"
            "      (0040,a730) VR: SQ VM: 1-1 ContentSequence\n"
            "         <<< 1\n"
            "            (0010,0020) VR: LO VM: 1-1 PatientID\n"
            "               1: 'P1'\n"
            "         >>> 1\n"
            "         <<< 2\n"
            "         >>> 2\n"
            "   >>> 1\n"
            "   <<< 2\n"
            "   >>> 2\n");
}

TEST_F(DumpTest, ShowsInheritedTagsAndHidesDeletedOnes) {
  auto parent = treeOf({text(0x0008, 0x0060, "Modality", CS, "MR"),
                        text(0x0010, 0x0010, "PatientName", PN, "Doe^Jane"),
                        text(0x0010, 0x0020, "PatientID", LO, "QA-0042")});
  auto child = std::make_shared<Tree>(parent);
  child->addTag(text(0x0010, 0x0010, "PatientName", PN, "Anonymous"));
  child->removeTag(TagId(0x0010, 0x0020));
  child->addTag(text(0x0020, 0x0013, "InstanceNumber", IS, "7"));
  EXPECT_EQ(dumpOf(child),
            "Transfer Syntax: Syntax 2 EXPLICIT_LITTLE_ENDIAN\n"
            "Specific Character Set: ISO_IR 100\n"
            "(0008,0060) VR: CS VM: 1-1 Modality\n"
            "   1: 'MR'\n"
            "(0010,0010) VR: PN VM: 1-1 PatientName\n"
            "   1: 'Anonymous'\n"
            "(0020,0013) VR: IS VM: 1-1 InstanceNumber\n"
            "   1: '7'\n");
}

TEST_F(DumpTest, DescribesNamelessTagsFromTheDictionaryOrAsNonStandard) {
  auto known = element(0x0010, 0x0010, "", LO, {1, 3});  // the dictionary says PN, 1-1
  known->addValue(std::string("Doe^Jane"));
  auto unknown = element(0x0009, 0x0010, "", LO, {1, 2});
  unknown->addValue(std::string("Private"));
  const auto message = messageOf(treeOf({known, unknown}));
  EXPECT_EQ(dumpOf(message, dict),
            "Transfer Syntax: Syntax 2 EXPLICIT_LITTLE_ENDIAN\n"
            "Specific Character Set: ISO_IR 100\n"
            "(0009,0010) VR: LO VM: 1-2 - non std. tag -\n"
            "   1: 'Private'\n"
            "(0010,0010) VR: PN VM: 1-1 PatientName\n"
            "   1: 'Doe^Jane'\n");
  // Without a dictionary: no syntax name, and nameless tags keep their own description.
  EXPECT_EQ(dumpOf(message, nullptr),
            "Transfer Syntax:  EXPLICIT_LITTLE_ENDIAN\n"
            "Specific Character Set: ISO_IR 100\n"
            "(0009,0010) VR: LO VM: 1-2 \n"
            "   1: 'Private'\n"
            "(0010,0010) VR: LO VM: 1-3 \n"
            "   1: 'Doe^Jane'\n");
}

TEST_F(DumpTest, FailuresPassOutAndKeepWhatWasPrinted) {
  // OF reads as a double, which the element does not implement for OF.
  std::ostringstream out;
  TextDump dump(dict, out);
  const auto floats = messageOf(treeOf({text(0x0008, 0x0060, "Modality", CS, "MR"),
                                        raw(0x0019, 0x1001, "Floats", OF, "00 00 80 3f")}));
  expectQuiltraError([&] { dump.write(nullptr, floats); }, "to_Float", "UNIMPLEMENTED");
  EXPECT_EQ(out.str(),
            "Transfer Syntax: Syntax 2 EXPLICIT_LITTLE_ENDIAN\n"
            "Specific Character Set: ISO_IR 100\n"
            "(0008,0060) VR: CS VM: 1-1 Modality\n"
            "   1: 'MR'\n"
            "(0019,1001) VR: OF VM: 1-1 Floats\n");

  // A nameless tag read by the dictionary's representation, which its own does not allow.
  auto rows = element(0x0028, 0x0010, "", LO);
  rows->addValue(std::string("512"));
  expectQuiltraError([&] { dump.write(nullptr, messageOf(treeOf({rows}))); }, "Tag::typeChecking",
                     "illegal type");

  auto odd = element(0x0011, 0x0011, "", LO);
  EXPECT_THROW(
      TextDump(std::make_shared<BrokenDict>(), out).write(nullptr, messageOf(treeOf({odd}))),
      std::runtime_error);
  expectQuiltraError([&] { dump.write(nullptr, nullptr); }, "Dump::write", "no message");
}

TEST_F(DumpTest, TextDumpWritesFilesAndMakesDumpsOnStandardOutput) {
  const auto message = messageOf(treeOf({text(0x0008, 0x0060, "Modality", CS, "MR")}));
  const std::string expected = dumpOf(message, dict);
  const auto path = std::filesystem::temp_directory_path() / "quiltra-dump-test.txt";
  TextDump(dict).writeFile(path.string(), nullptr, message);
  std::ifstream file(path);
  std::stringstream written;
  written << file.rdbuf();
  std::remove(path.string().c_str());
  EXPECT_EQ(written.str(), expected);
  expectQuiltraError(
      [&] { TextDump(dict).writeFile((path / "no" / "such").string(), nullptr, message); },
      "TextDump::writeFile", "cannot open file for writing");

  std::ostringstream captured;
  std::streambuf* const standard = std::cout.rdbuf(captured.rdbuf());
  const auto made = std::dynamic_pointer_cast<TextDump>(TextDump(nullptr).createInstance(dict));
  if (made) made->write(nullptr, message);
  std::cout.rdbuf(standard);
  ASSERT_TRUE(made);
  EXPECT_EQ(captured.str(), expected);
}
