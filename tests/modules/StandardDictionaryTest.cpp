#include "dictionary/DictionaryTable.h"
#include "support/QuiltraTestSupport.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <set>
#include <sstream>
#include <string>

#include <quiltra/core/TagId.h>
#include <quiltra/core/TagInfo.h>
#include <quiltra/dataset/Dict.h>
#include <quiltra/dataset/Message.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>
#include <quiltra/io/ModuleDirectoryDelegate.h>
#include <quiltra/io/TextDump.h>

using Quiltra::TagId;
using Quiltra::TagInfo;
using QuiltraTest::expectQuiltraError;

namespace {

constexpr unsigned int kN = 4294967295u;

// The dictionary as a host gets it: the module loaded from the build tree's module folder
// by the default delegate.
class StandardDictionaryTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    Quiltra_Utils::ModuleDirectoryDelegate modules;
    _dict = Quiltra::Dict::singleton(&modules);
  }
  static void TearDownTestSuite() { _dict.reset(); }

  void SetUp() override { ASSERT_NE(_dict, nullptr); }

  // Checks every field of the description of id, and that the name leads back to id's
  // description unless the tag is one of a range.
  void expectTag(TagId id, const std::string& name, Quiltra::Vr vr,
                 std::pair<unsigned int, unsigned int> multiplicity) {
    SCOPED_TRACE(id.toString() + " " + name);
    ASSERT_TRUE(_dict->knowsTagId(id));
    const TagInfo info = _dict->tagInfo(id);
    EXPECT_EQ(info.id(), id);
    EXPECT_EQ(info.name(), name);
    EXPECT_EQ(info.vr(), vr);
    EXPECT_EQ(info.multiplicity(), multiplicity);
    EXPECT_TRUE(_dict->knowsTagName(name));
    const TagInfo byName = _dict->tagInfo(name);
    EXPECT_EQ(byName.name(), name);
    EXPECT_EQ(byName.vr(), vr);
  }

  static std::shared_ptr<const Quiltra::Dict> _dict;
};

std::shared_ptr<const Quiltra::Dict> StandardDictionaryTest::_dict;

}  // namespace

TEST_F(StandardDictionaryTest, DescribesAttributesByTagAndByName) {
  expectTag(TagId(0x0010, 0x0010), "PatientName", Quiltra::PN, {1, 1});
  expectTag(TagId(0x7FE0, 0x0010), "PixelData", Quiltra::OB, {1, 1});
  expectTag(TagId(0x0008, 0x0005), "SpecificCharacterSet", Quiltra::CS, {1, kN});
  expectTag(TagId(0x0028, 0x0030), "PixelSpacing", Quiltra::DS, {2, 2});
  expectTag(TagId(0x0040, 0xA730), "ContentSequence", Quiltra::SQ, {1, 1});
  expectTag(TagId(0x0000, 0x0000), "CommandGroupLength", Quiltra::UL, {1, 1});
  expectTag(TagId(0x0008, 0x0010), "RecognitionCode", Quiltra::SH, {1, 1});  // retired
  EXPECT_EQ(_dict->tagId("PixelData"), TagId(0x7FE0, 0x0010));
  EXPECT_EQ(_dict->name(TagId(0x0028, 0x0010)), "Rows");
  EXPECT_EQ(_dict->vr(TagId(0x0028, 0x0010)), Quiltra::US);
  EXPECT_TRUE(_dict->isTagNameKnown("Columns") && _dict->isTagIdKnown(TagId(0x0028, 0x0011)));
}

TEST_F(StandardDictionaryTest, MatchesRepeatingGroupsAndElementRangesByMask) {
  for (unsigned short group : {0x6000, 0x6002, 0x601E, 0x60FE}) {
    expectTag(TagId(group, 0x3000), "OverlayData", Quiltra::OB, {1, 1});
    expectTag(TagId(group, 0x0010), "OverlayRows", Quiltra::US, {1, 1});
  }
  expectTag(TagId(0x5010, 0x3000), "CurveData", Quiltra::OB, {1, 1});
  expectTag(TagId(0x7F02, 0x0010), "VariablePixelData", Quiltra::OB, {1, 1});
  expectTag(TagId(0x0020, 0x3100), "SourceImageIDs", Quiltra::CS, {1, kN});
  expectTag(TagId(0x0020, 0x31FF), "SourceImageIDs", Quiltra::CS, {1, kN});
  EXPECT_EQ(_dict->tagId("OverlayData"), TagId(0x6000, 0x3000));
  EXPECT_EQ(_dict->tagId("SourceImageIDs"), TagId(0x0020, 0x3100));
  // Odd groups are private, groups beyond a range are not in it, and a range's elements
  // end where it says.
  EXPECT_FALSE(_dict->knowsTagId(TagId(0x6001, 0x3000)));
  EXPECT_FALSE(_dict->knowsTagId(TagId(0x6100, 0x3000)));
  EXPECT_FALSE(_dict->knowsTagId(TagId(0x0020, 0x3200)));
  EXPECT_FALSE(_dict->knowsTagId(TagId(0x6000, 0x3001)));
}

TEST_F(StandardDictionaryTest, DescribesGroupLengthsAndPrivateCreators) {
  for (unsigned short group : {0x0008, 0x0009, 0x0028, 0x6002, 0x7FE1, 0xFFFE}) {
    expectTag(TagId(group, 0x0000), "GroupLength", Quiltra::UL, {1, 1});
  }
  expectTag(TagId(0x0002, 0x0000), "FileMetaInformationGroupLength", Quiltra::UL, {1, 1});
  for (unsigned int raw : {0x00090010u, 0x000900FFu, 0x00290042u, 0x6001'0010u, 0xFFFF'00FFu}) {
    expectTag(TagId(raw), "PrivateCreator", Quiltra::LO, {1, 1});
  }
  EXPECT_FALSE(_dict->knowsTagId(TagId(0x0009, 0x000F)));
  EXPECT_FALSE(_dict->knowsTagId(TagId(0x0009, 0x0100)));
  EXPECT_FALSE(_dict->knowsTagId(TagId(0x0009, 0x1010)));  // a private block's element
  EXPECT_FALSE(_dict->knowsTagId(TagId(0x0008, 0x00FE)));  // even groups have no creators
  EXPECT_EQ(_dict->tagId("GroupLength"), TagId(0x0001, 0x0000));
  EXPECT_EQ(_dict->tagId("PrivateCreator"), TagId(0x0001, 0x0010));
}

TEST_F(StandardDictionaryTest, MapsMultiplicitiesAndRepresentationsOutsideTheLibrarys) {
  expectTag(TagId(0x0008, 0x0008), "ImageType", Quiltra::CS, {2, kN});                      // 2-n
  expectTag(TagId(0x0018, 0x1620), "VerticesOfThePolygonalShutter", Quiltra::IS, {2, kN});  // 2-2n
  expectTag(TagId(0x0008, 0x1162), "CalculatedFrameList", Quiltra::UL, {3, kN});            // 3-3n
  expectTag(TagId(0x0028, 0x0106), "SmallestImagePixelValue", Quiltra::US, {1, 1});  // US or SS
  expectTag(TagId(0x0028, 0x3006), "LUTData", Quiltra::US, {1, kN});                 // US or OW
  expectTag(TagId(0x0004, 0x1400), "OffsetOfTheNextDirectoryRecord", Quiltra::UL, {1, 1});
  expectTag(TagId(0xFFFE, 0xE000), "Item", Quiltra::UN, {1, 1});
  expectTag(TagId(0x0008, 0x0119), "LongCodeValue", Quiltra::LO, {1, 1});               // UC
  expectTag(TagId(0x0008, 0x1190), "RetrieveURL", Quiltra::UT, {1, 1});                 // UR
  expectTag(TagId(0x0066, 0x0022), "DoublePointCoordinatesData", Quiltra::OB, {1, 1});  // OD
  expectTag(TagId(0x7FE0, 0x0001), "ExtendedOffsetTable", Quiltra::OB, {1, 1});         // OV
  expectTag(TagId(0x0072, 0x0082), "SelectorSVValue", Quiltra::OB, {1, kN});            // SV
  expectTag(TagId(0x0072, 0x0083), "SelectorUVValue", Quiltra::OB, {1, kN});            // UV
}

TEST_F(StandardDictionaryTest, RefusesUnknownTagsAndNames) {
  for (TagId id : {TagId(0x0010, 0x0011), TagId(0x0009, 0x1000), TagId(0xFFFF, 0xFFFF),
                   TagId(0x7FE0, 0x0050)}) {
    EXPECT_FALSE(_dict->knowsTagId(id));
    expectQuiltraError([&] { _dict->tagInfo(id); }, "StandardDictionary::tagInfo",
                       "unknown tag " + id.toString());
    expectQuiltraError([&] { _dict->name(id); }, "StandardDictionary::tagInfo",
                       "unknown tag " + id.toString());
  }
  for (const std::string name :
       {"", "patientname", "PatientName ", "RETIRED_RecognitionCode", "Zzz", "AAA"}) {
    EXPECT_FALSE(_dict->knowsTagName(name));
    expectQuiltraError([&] { _dict->tagId(name); }, "StandardDictionary::tagInfo",
                       "unknown name " + name);
  }
}

TEST_F(StandardDictionaryTest, DumpDescribesNamelessTagsAndMarksUnknownOnes) {
  auto tree = std::make_shared<Quiltra::Tree>();
  for (const TagId& id : {TagId(0x0010, 0x0010), TagId(0x0010, 0x0011)}) {
    auto tag = std::make_shared<Quiltra::Tag>(TagInfo(id, "", Quiltra::LO, {1, 1}));
    tag->addValue(std::string("x"));
    tree->addTag(tag);
  }
  auto message = std::make_shared<Quiltra::Message>("ISO_IR 192", Quiltra::EXPLICIT_LITTLE_ENDIAN);
  message->setTags(tree);
  std::ostringstream out;
  Quiltra::TextDump(_dict, out).write(nullptr, message);
  EXPECT_EQ(out.str(),
            "Transfer Syntax: 1.2.840.10008.1.2.1 EXPLICIT_LITTLE_ENDIAN\n"
            "Specific Character Set: ISO_IR 192\n"
            "(0010,0010) VR: PN VM: 1-1 PatientName\n"
            "   1: 'x'\n"
            "(0010,0011) VR: LO VM: 1-1 - non std. tag -\n"
            "   1: 'x'\n");
}

TEST_F(StandardDictionaryTest, NamesEachTransferSyntaxByItsUid) {
  EXPECT_EQ(_dict->syntaxName(Quiltra::IMPLICIT_LITTLE_ENDIAN), "1.2.840.10008.1.2");
  EXPECT_EQ(_dict->syntaxName(Quiltra::EXPLICIT_LITTLE_ENDIAN), "1.2.840.10008.1.2.1");
  EXPECT_EQ(_dict->syntaxName(Quiltra::DEFLATED_EXPLICIT_LITTLE_ENDIAN), "1.2.840.10008.1.2.1.99");
  EXPECT_EQ(_dict->syntaxName(Quiltra::JPEG_BASELINE), "1.2.840.10008.1.2.4.50");
  EXPECT_EQ(_dict->syntaxName(Quiltra::JPEG_LOSSLESS_HIER_14), "1.2.840.10008.1.2.4.70");
  EXPECT_EQ(_dict->syntaxName(Quiltra::JPEG_LS_LOSSLESS), "1.2.840.10008.1.2.4.80");
  EXPECT_EQ(_dict->syntaxName(Quiltra::MPEG2_MPML), "1.2.840.10008.1.2.4.100");
  EXPECT_EQ(_dict->syntaxName(Quiltra::JPEG_2000_MC), "1.2.840.10008.1.2.4.93");
  // Every other named syntax has a UID of its own; the rest fall back to the library's text.
  std::set<std::string> uids;
  for (int code = 1; code <= 31; ++code) {
    if (code == Quiltra::IMPLICIT_BIG_ENDIAN) continue;
    const std::string uid = _dict->syntaxName(static_cast<Quiltra::TransferSyntax>(code));
    EXPECT_EQ(uid.rfind("1.2.840.10008.1.2", 0), 0u) << code;
    uids.insert(uid);
  }
  EXPECT_EQ(uids.size(), 30u);
  EXPECT_EQ(_dict->syntaxName(Quiltra::IMPLICIT_BIG_ENDIAN), "IMPLICIT_BIG_ENDIAN");
  EXPECT_EQ(_dict->syntaxName(static_cast<Quiltra::TransferSyntax>(0)), "INVALID_TRANSFER_SYNTAX");
  EXPECT_EQ(_dict->syntaxName(static_cast<Quiltra::TransferSyntax>(32)), "INVALID_TRANSFER_SYNTAX");
}

// Walks the generated table itself: it must be sorted as the lookups assume, and every
// attribute must be found by its tag and its name.
TEST_F(StandardDictionaryTest, FindsEveryAttributeOfTheTableByTagAndName) {
  using namespace Quiltra::DictionaryTable;
  const auto byTag = [](const Quiltra::DictionaryEntry& a, const Quiltra::DictionaryEntry& b) {
    return a.tag < b.tag;
  };
  EXPECT_TRUE(std::is_sorted(std::begin(kEntries), std::end(kEntries), byTag));
  EXPECT_TRUE(std::is_sorted(std::begin(kRepeatingEntries), std::end(kRepeatingEntries), byTag));
  EXPECT_TRUE(
      std::adjacent_find(std::begin(kByName), std::end(kByName), [](const auto* a, const auto* b) {
        return std::strcmp(a->name, b->name) >= 0;
      }) == std::end(kByName));
  EXPECT_EQ(std::size(kByName), std::size(kEntries) + std::size(kRepeatingEntries));
  for (const Quiltra::DictionaryEntry* entry : kByName) {
    const TagId last(entry->group(), entry->lastElement);
    for (TagId id : {TagId(entry->tag), last}) {
      const TagInfo info = _dict->tagInfo(id);
      ASSERT_EQ(info.name(), entry->name) << id.toString();
      EXPECT_EQ(info.vr(), entry->vr) << id.toString();
      EXPECT_EQ(info.multiplicity().first, entry->minimum) << id.toString();
      EXPECT_EQ(info.multiplicity().second, entry->maximum) << id.toString();
    }
    ASSERT_EQ(_dict->tagId(entry->name), TagId(entry->tag)) << entry->name;
  }
}
