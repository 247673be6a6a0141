#include "support/QuiltraTestSupport.h"

#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include <quiltra/core/TagInfo.h>
#include <quiltra/core/Value.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>

namespace Quiltra {
namespace {

using QuiltraTest::expectQuiltraError;
using Bytes = std::vector<unsigned char>;

const TagId kId(0x0018, 0x0050);
const TagId kOtherId(0x0018, 0x0088);
const TagId kSequenceId(0x0008, 0x1115);

Bytes littleEndian(std::uint64_t bits, unsigned int width) {
  Bytes bytes;
  for (unsigned int i = 0; i < width; ++i)
    bytes.push_back(static_cast<unsigned char>(bits >> 8 * i));
  return bytes;
}

// The stored bytes of a number in a binary representation.
Bytes encode(Vr vr, double number) {
  switch (vr) {
    case SS:
      return littleEndian(static_cast<std::uint16_t>(static_cast<std::int16_t>(number)), 2);
    case US:
      return littleEndian(static_cast<std::uint16_t>(number), 2);
    case SL:
      return littleEndian(static_cast<std::uint32_t>(static_cast<std::int32_t>(number)), 4);
    case UL:
      return littleEndian(static_cast<std::uint32_t>(number), 4);
    case FL: {
      const float single = static_cast<float>(number);
      std::uint32_t bits = 0;
      std::memcpy(&bits, &single, sizeof bits);
      return littleEndian(bits, 4);
    }
    default: {
      std::uint64_t bits = 0;
      std::memcpy(&bits, &number, sizeof bits);
      return littleEndian(bits, 8);
    }
  }
}

Tag withBytes(Vr vr, std::initializer_list<Bytes> values, const TagId& id = kId) {
  Tag tag(TagInfo(id, "Sample", vr, {1, 1}));
  for (const Bytes& bytes : values) {
    tag.addValue().setData(static_cast<unsigned int>(bytes.size()), bytes.data());
  }
  return tag;
}

Tag numbers(Vr vr, std::initializer_list<double> values, const TagId& id = kId) {
  Tag tag = withBytes(vr, {}, id);
  for (double number : values) {
    const Bytes bytes = encode(vr, number);
    tag.addValue().setData(static_cast<unsigned int>(bytes.size()), bytes.data());
  }
  return tag;
}

Tag texts(Vr vr, std::initializer_list<const char*> values, const TagId& id = kId) {
  Tag tag = withBytes(vr, {}, id);
  for (const char* text : values) tag.addValue().setData(std::string(text));
  return tag;
}

// A sequence of one item holding the given elements.
Tag sequenceWith(std::initializer_list<Tag> elements) {
  auto item = std::make_shared<Tree>();
  for (const Tag& element : elements) item->addTag(std::make_shared<Tag>(element));
  Tag tag(TagInfo(kSequenceId, "Items", SQ, {1, 1}));
  tag.addSequenceItem(item);
  return tag;
}

TEST(TagComparisonTest, ElementsWithoutValuesCompareEqual) {
  EXPECT_EQ(texts(CS, {}).compare(numbers(FD, {}), 0.0), 0);
  EXPECT_EQ(numbers(SL, {}).compare(numbers(SL, {}), 0.0), 0);
}

TEST(TagComparisonTest, OrdersByCommonValuesThenByCount) {
  EXPECT_EQ(numbers(SL, {1, 2}).compare(numbers(SL, {1, 2, 3}), 0.0), -1);
  EXPECT_EQ(numbers(SL, {1, 2, 3}).compare(numbers(SL, {1, 2}), 0.0), 1);
  EXPECT_EQ(numbers(SL, {1, 3}).compare(numbers(SL, {1, 2, 3}), 0.0), 1);
  EXPECT_EQ(numbers(SL, {1, 2}).compare(numbers(SL, {1, 3}), 0.0), -1);
  EXPECT_EQ(numbers(SL, {2147483647}).compare(numbers(SL, {-1}), 0.0), 1);
}

TEST(TagComparisonTest, ReadsEachSideByItsOwnRepresentation) {
  EXPECT_EQ(numbers(UL, {4294967295.0}).compare(numbers(UL, {1}), 0.0), 1);
  EXPECT_EQ(numbers(UL, {4294967294.0}).compare(numbers(UL, {4294967295.0}), 0.0), -1);
  EXPECT_EQ(texts(IS, {"10"}).compare(numbers(FD, {10.0}), 0.0), 0);
  EXPECT_EQ(texts(IS, {"10"}).compare(numbers(FD, {10.5}), 0.0), -1);
  EXPECT_EQ(numbers(US, {65535}).compare(numbers(SS, {-1}), 0.0), 1);
  EXPECT_EQ(texts(DS, {"2.5"}).compare(numbers(FL, {2.5}), 0.0), 0);
}

TEST(TagComparisonTest, AppliesRelativeToleranceExceptToIntegralPairs) {
  const Tag low = numbers(FD, {100.0});
  const Tag high = numbers(FD, {100.5});
  EXPECT_EQ(low.compare(high, 0.01), 0);
  EXPECT_EQ(low.compare(high, -0.01), 0);  // sign ignored
  EXPECT_EQ(low.compare(high, 0.001), -1);
  EXPECT_EQ(high.compare(low, 0.001), 1);
  EXPECT_EQ(low.compare(high, 0.0), -1);
  EXPECT_EQ(numbers(SL, {100}).compare(numbers(SL, {101}), 0.5), -1);
  EXPECT_EQ(numbers(UL, {100}).compare(numbers(SL, {101}), 0.5), 0);  // UL is not integral
}

TEST(TagComparisonTest, ComparesNonNumericPairsByteWise) {
  EXPECT_LT(texts(CS, {"AB"}).compare(texts(CS, {"ABC"}), 0.0), 0);
  EXPECT_GT(texts(CS, {"ABC"}).compare(texts(CS, {"AB"}), 0.0), 0);
  EXPECT_GT(texts(CS, {"B"}).compare(numbers(FD, {1.0}), 0.0), 0);              // mixed sets: bytes
  EXPECT_GT(withBytes(OB, {{0x80}}).compare(withBytes(OB, {{0x01}}), 0.0), 0);  // unsigned
  EXPECT_EQ(withBytes(OB, {{1, 0, 5}}).compare(withBytes(OB, {{1, 0, 7}}), 0.0), 0);
  EXPECT_EQ(withBytes(OB, {{1, 2}}).compare(withBytes(OB, {{1, 2, 3}}), 0.0), 0);
  EXPECT_EQ(withBytes(OB, {{}}).compare(withBytes(OB, {{9}}), 0.0), 0);
  EXPECT_LT(withBytes(OB, {{1}, {2}}).compare(withBytes(OB, {{1}, {3}}), 0.0), 0);
}

TEST(TagComparisonTest, RejectsNullNumericValues) {
  Tag empty = numbers(SL, {});
  empty.addValue();
  expectQuiltraError([&] { empty.compare(numbers(SL, {1}), 0.0); }, "nullChecking", "");
  expectQuiltraError([&] { numbers(FD, {1}).compare(empty, 0.5); }, "nullChecking", "");
}

TEST(TagComparisonTest, IsEqualUsesAbsoluteToleranceOnlyForFloatingPairs) {
  EXPECT_TRUE(numbers(FD, {1.0}).isEqual(numbers(FD, {1.005}), 0.01));
  EXPECT_FALSE(numbers(FD, {1.0}).isEqual(numbers(FD, {1.005}), 0.001));
  EXPECT_TRUE(numbers(FD, {1.0}).isEqual(numbers(FD, {1.5}), 0.5));  // the bound is equal
  EXPECT_FALSE(numbers(FD, {100.0}).isEqual(numbers(FD, {100.5}), 0.01));
  EXPECT_TRUE(texts(DS, {"1.0"}).isEqual(numbers(FL, {1.25}), 0.5));
  EXPECT_FALSE(numbers(SL, {1}).isEqual(numbers(SL, {2}), 5.0));
  EXPECT_FALSE(numbers(FL, {1.0}) == numbers(FD, {1.0}));
  EXPECT_TRUE(numbers(FL, {1.0}) != numbers(FD, {1.0}));
  EXPECT_TRUE(numbers(FL, {1.0}).isEqual(numbers(FD, {1.0}), 1e-9));
  EXPECT_TRUE(numbers(FD, {1.0, 2.0}) == numbers(FD, {1.0, 2.0}));
}

TEST(TagComparisonTest, IsEqualComparesIdAndValueCountButNotTheDescription) {
  EXPECT_FALSE(texts(CS, {"A"}).isEqual(texts(CS, {"A"}, kOtherId), 0.0));
  EXPECT_FALSE(texts(CS, {"A"}).isEqual(texts(CS, {"A", "B"}), 0.0));
  EXPECT_FALSE(texts(CS, {"A"}).isEqual(texts(CS, {"B"}), 0.0));
  EXPECT_TRUE(texts(CS, {"A"}).isEqual(texts(LO, {"A"}), 0.0));
}

TEST(TagComparisonTest, IsEqualWalksSequenceItems) {
  const Tag element = texts(CS, {"A"});
  const Tag near = numbers(FD, {1.0}, kOtherId);
  const Tag sequence = sequenceWith({element, near});
  EXPECT_TRUE(sequence.isEqual(sequenceWith({element, near}), 0.0));
  EXPECT_TRUE(sequence.isEqual(sequenceWith({element, numbers(FD, {1.1}, kOtherId)}), 0.2));
  EXPECT_FALSE(sequence.isEqual(sequenceWith({element, numbers(FD, {1.1}, kOtherId)}), 0.0));
  EXPECT_FALSE(sequence.isEqual(sequenceWith({element}), 0.0));
  EXPECT_FALSE(sequenceWith({element}).isEqual(sequence, 0.0));
  EXPECT_FALSE(sequence.isEqual(sequenceWith({element, texts(CS, {"A"}, kSequenceId)}), 0.0));
}

TEST(TagComparisonTest, IsEqualLooksUpItemElementsThroughTheOtherItemsLayers) {
  auto parent = std::make_shared<Tree>();
  parent->addTag(std::make_shared<Tag>(texts(CS, {"A"})));
  auto layered = std::make_shared<Tree>(parent);
  layered->addTag(std::make_shared<Tag>(texts(CS, {"B"}, kOtherId)));
  Tag other(TagInfo(kSequenceId, "Items", SQ, {1, 1}));
  other.addSequenceItem(layered);
  EXPECT_TRUE(sequenceWith({texts(CS, {"A"})}).isEqual(other, 0.0));
}

TEST(TagComparisonTest, IsEqualTreatsNullItemsAsEqualOnlyToNullItems) {
  Tag withNull = sequenceWith({texts(CS, {"A"})});
  withNull.addSequenceItem();
  Tag bothNull = sequenceWith({texts(CS, {"A"})});
  bothNull.addSequenceItem();
  Tag withTree = sequenceWith({texts(CS, {"A"})});
  withTree.addSequenceItem(std::make_shared<Tree>());
  EXPECT_TRUE(withNull.isEqual(bothNull, 0.0));
  EXPECT_FALSE(withNull.isEqual(withTree, 0.0));
  EXPECT_FALSE(withTree.isEqual(withNull, 0.0));
}

TEST(TagComparisonTest, IsEqualRejectsANonSequenceAgainstASequenceWithItems) {
  Tag impostor = texts(CS, {}, kSequenceId);
  impostor.addSequenceItem();
  expectQuiltraError([&] { sequenceWith({}).isEqual(impostor, 0.0); }, "Tag::typeChecking",
                     "illegal type");
  Tag bare(TagInfo(kSequenceId, "Items", SQ, {1, 1}));
  EXPECT_TRUE(bare.isEqual(texts(CS, {}, kSequenceId), 0.0));  // no items, no check
}

}  // namespace
}  // namespace Quiltra
