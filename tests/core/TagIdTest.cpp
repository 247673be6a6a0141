#include "support/QuiltraTestSupport.h"

#include <gtest/gtest.h>
#include <string>

#include <quiltra/core/TagId.h>

using Quiltra::TagId;

namespace {

const std::string kBadText = "cannot convert to tagid tidstr was ";

}  // namespace

TEST(TagIdTest, PacksGroupHighAndElementLow) {
  const TagId id(0x7FE0, 0x0010);
  EXPECT_EQ(id.rawId(), 0x7FE00010u);
  EXPECT_EQ(id.groupId(), 0x7FE0);
  EXPECT_EQ(id.elementId(), 0x0010);
  EXPECT_EQ(TagId(0x7FE00010u), id);
  EXPECT_EQ(TagId().rawId(), 0u);
  EXPECT_EQ(TagId().toString(), "(0000,0000)");
  EXPECT_EQ(*TagId::create(0x7FE0, 0x0010), *TagId::create(0x7FE00010u));
}

TEST(TagIdTest, TreatsExactlyOddGroupsAsPrivate) {
  EXPECT_FALSE(TagId().isPrivate());
  EXPECT_TRUE(TagId(0x0009, 0x0010).isPrivate());
  EXPECT_FALSE(TagId(0x0008, 0x0010).isPrivate());
  EXPECT_FALSE(TagId(0x0008, 0xFFFF).isPrivate());  // an odd element does not count
  EXPECT_TRUE(TagId(0x0001, 0x0000).isPrivate());
  EXPECT_TRUE(TagId(0xFFFF, 0x0000).isPrivate());
}

TEST(TagIdTest, OrdersByGroupThenElementUnsigned) {
  const TagId low(0x0008, 0xFFFF);
  const TagId high(0x0009, 0x0000);
  EXPECT_TRUE(low < high && low <= high && high > low && high >= low && low != high);
  EXPECT_FALSE(high < low || high <= low || low > high || low >= high || low == high);
  EXPECT_GT(TagId(0x7FE0, 0x0010), TagId(0x0028, 0x0100));
  EXPECT_GT(TagId(0xFFFE, 0xE000), TagId(0x7FE0, 0x0010));  // no sign in the comparison
  EXPECT_TRUE(high <= TagId(0x00090000u) && high >= TagId(0x00090000u));
}

TEST(TagIdTest, PrintsFourLowerCaseHexDigitsEach) {
  EXPECT_EQ(TagId(0x7FE0, 0x0010).toString(), "(7fe0,0010)");
  EXPECT_EQ(TagId(0x0008, 0x0005).toString(), "(0008,0005)");
  EXPECT_EQ(TagId(0xFFFF, 0xABCD).toString(), "(ffff,abcd)");
}

TEST(TagIdTest, ParsesGroupAndElementFromText) {
  const TagId expected(0x0010, 0x0020);
  for (const char* text : {"(0010,0020)", "0010,0020", "( 0x0010 , 0x0020 )", "10,20"}) {
    EXPECT_EQ(TagId(std::string(text)), expected) << text;
  }
  EXPECT_EQ(TagId(std::string(",")), TagId());
  EXPECT_EQ(TagId(std::string("12345,0001")), TagId(0x2345, 0x0001));
  EXPECT_EQ(TagId(std::string("(00g8,zEz1)")), TagId(0x0008, 0x00E1));  // g, z dropped
  const TagId odd(0xFFFF, 0xABCD);
  EXPECT_EQ(TagId(odd.toString()), odd);
  EXPECT_EQ(*TagId::create(std::string("7fe0,0010")), TagId(0x7FE0, 0x0010));
}

TEST(TagIdTest, RejectsTextWithoutExactlyOneComma) {
  for (const std::string text : {"", "00100020", "1,2,3", ",,"}) {
    QuiltraTest::expectQuiltraError([&] { TagId parsed(text); }, "TagId::TagId", kBadText + text);
  }
  QuiltraTest::expectQuiltraError([] { TagId::create(std::string("(0010)")); }, "TagId::TagId",
                                  kBadText + "(0010)");
}

TEST(TagIdTest, ChangesInPlaceThroughRawReference) {
  TagId id(0x0010, 0x0020);
  id.rawId() = 0x00280011u;
  EXPECT_EQ(id.groupId(), 0x0028);
  EXPECT_EQ(id.elementId(), 0x0011);
  static_cast<unsigned int&>(id) += 0x00010000u;
  EXPECT_EQ(id.toString(), "(0029,0011)");
  EXPECT_TRUE(id.isPrivate());
}
