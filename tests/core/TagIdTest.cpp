#include "support/QuiltraTestSupport.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>

#include <quiltra/core/TagId.h>

using Quiltra::TagId;

TEST(TagIdTest, PacksPrintsOrdersAndTellsPrivateGroups) {
  TagId id(0x7FE0, 0x0010);
  EXPECT_TRUE(id.rawId() == 0x7FE00010u && id.groupId() == 0x7FE0 && id.elementId() == 0x10);
  EXPECT_EQ(id.toString() + TagId(0xFFFF, 0xABCD).toString() + TagId().toString(),
            "(7fe0,0010)(ffff,abcd)(0000,0000)");
  id.rawId() = 0x00290000u;  // changes the id in place
  EXPECT_TRUE(id.groupId() == 0x0029 && id.isPrivate() && TagId(0xFFFF, 0).isPrivate());
  EXPECT_FALSE(TagId().isPrivate() || TagId(0x0008, 0xFFFF).isPrivate());  // odd element
  EXPECT_TRUE(TagId(0x0008, 0xFFFF) < id && TagId(0xFFFE, 0xE000) > id);   // unsigned
}

TEST(TagIdTest, ParsesTextWithExactlyOneComma) {
  // g and z are dropped, stray hexadecimal letters kept, five digits cut to the low four.
  // clang-format off
  const std::pair<const char*, unsigned int> cases[] = {{"(0010,0020)", 0x00100020u},
      {"0010,0020", 0x00100020u}, {"( 0x0010 , 0x0020 )", 0x00100020u}, {"10,20", 0x00100020u},
      {",", 0u}, {"12345,0001", 0x23450001u}, {"(00g8,zEz1)", 0x000800E1u}};
  // clang-format on
  for (const auto& [text, raw] : cases) EXPECT_EQ(TagId(std::string(text)).rawId(), raw) << text;
  EXPECT_EQ(*TagId::create(TagId(0xFFFF, 0xABCD).toString()), TagId(0xFFFF, 0xABCD));
  for (const std::string text : {"", "00100020", "1,2,3", ",,"}) {
    QuiltraTest::expectQuiltraError([&] { TagId::create(text); }, "TagId::TagId",
                                    "cannot convert to tagid tidstr was " + text);
  }
}
