#include "support/QuiltraTestSupport.h"

#include <gtest/gtest.h>
#include <initializer_list>
#include <tuple>

#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>

namespace Quiltra {
namespace {

const TagId kOtherId(0x0018, 0x0088);

// The values of a backslash-separated text, each written as vr takes it.
Tag values(Vr vr, const std::string& text, const TagId& id = TagId(0x0018, 0x0050)) {
  Tag tag(TagInfo(id, "Sample", vr, {1, 1}));
  if (!text.empty()) tag.addValue(text);
  return tag;
}
Tag bytes(std::vector<unsigned char> raw) {
  Tag tag = values(OB, "");
  tag.addValue().setData(static_cast<unsigned int>(raw.size()), raw.data());
  return tag;
}
Tag sequenceOf(std::initializer_list<Tag> elements, std::shared_ptr<Tree> parent = nullptr) {
  Tag tag = values(SQ, "", kOtherId);
  tag.addSequenceItem(std::make_shared<Tree>(parent));
  for (const Tag& element : elements) tag.sequenceItems()[0]->addTag(element.copy());
  return tag;
}

TEST(TagComparisonTest, ComparesAndEqualsByNumericSetToleranceAndBytes) {
  const std::tuple<Tag, Tag, double, int, bool> cases[] = {
      {values(CS, ""), values(FD, ""), 0.0, 0, true},
      {values(SL, "1\\2"), values(SL, "1\\2\\3"), 0.0, -1, false},  // more values last
      {values(US, "1\\3"), values(SL, "1\\2\\3"), 0.0, 1, false},   // a value decides first
      {values(SL, "2147483647"), values(SL, "-1"), 0.0, 1, false},
      {values(UL, "4294967295"), values(UL, "4294967294"), 0.0, 1, false},
      {values(IS, "10"), values(FD, "10"), 0.0, 0, false},
      {values(FD, "100"), values(FD, "100.5"), 0.01, 0, false},  // 0.5 <= 0.01 * 100.5
      {values(FD, "100"), values(FD, "100.5"), -0.01, 0, false},
      {values(FD, "100.5"), values(FD, "100"), 0.001, 1, false},
      {values(FD, "1"), values(FD, "1.5"), 0.5, 0, true},  // the bound counts as equal
      {values(DS, "1.0"), values(FL, "1.25"), 0.5, 0, true},
      {values(FL, "1"), values(FD, "1"), 0.0, 0, false},
      {values(SL, "100"), values(SL, "101"), 5.0, -1, false},  // integers ignore tolerance
      {values(UL, "100"), values(SL, "101"), 0.5, 0, false},   // UL is not integral
      {values(CS, "AB"), values(CS, "ABC"), 0.0, -1, false},
      {values(CS, "B"), values(FD, "1"), 0.0, 1, false},  // mixed sets compare bytes
      {values(CS, "\x80"), values(CS, "\x01"), 0.0, 1, false},
      {bytes({1, 0, 5}), bytes({1, 0, 7}), 0.0, 0, false},  // a shared zero byte ends it
      {bytes({1, 2}), bytes({1, 2, 3}), 0.0, 0, false},
      {bytes({}), bytes({9}), 0.0, 0, false},
      {values(CS, "A"), values(CS, "A", kOtherId), 0.0, 0, false},
      {values(CS, "A"), values(LO, "A"), 0.0, 0, true},  // the description is not compared
  };
  for (const auto& [a, b, tolerance, order, equal] : cases) {
    const int result = a.compare(b, tolerance);
    EXPECT_EQ((result > 0) - (result < 0), order) << toString(a.info().vr()) << " at " << tolerance;
    EXPECT_EQ(a.isEqual(b, tolerance), equal) << toString(a.info().vr()) << " at " << tolerance;
  }
}

TEST(TagComparisonTest, IsEqualWalksItemsThroughTheOtherItemsLayersAndNullItems) {
  const Tag a = values(CS, "A");
  const Tag sequence = sequenceOf({a, values(FD, "1", kOtherId)});
  const Tag near = sequenceOf({a, values(FD, "1.1", kOtherId)});
  EXPECT_TRUE(sequence.isEqual(near, 0.2) && !sequence.isEqual(near, 0.0));
  EXPECT_FALSE(sequenceOf({a}).isEqual(sequence, 0.0));  // B has one more own element
  EXPECT_FALSE(sequence.isEqual(sequenceOf({a, values(CS, "A", TagId(0x00200010u))}), 0.0));
  auto parent = std::make_shared<Tree>();
  parent->addTag(a.copy());
  EXPECT_TRUE(sequenceOf({a}).isEqual(sequenceOf({values(CS, "B", kOtherId)}, parent), 0.0));
  Tag null = sequenceOf({});  // null items equal only null items
  null.sequenceItems()[0].reset();
  EXPECT_TRUE(null.isEqual(Tag(null), 0.0));
  EXPECT_FALSE(null.isEqual(sequenceOf({}), 0.0) || sequenceOf({}).isEqual(null, 0.0));
  Tag impostor = values(CS, "", kOtherId);  // same id, no values, one item, not SQ
  impostor.addSequenceItem();
  QuiltraTest::expectQuiltraError([&] { sequenceOf({}).isEqual(impostor, 0.0); },
                                  "Tag::typeChecking", "illegal type");
}

}  // namespace
}  // namespace Quiltra
