#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include <quiltra/core/Value.h>

using Quiltra::Value;

namespace {

const unsigned char kBytes[] = {0x11, 0x22, 0x33, 0x44, 0x55};

std::vector<unsigned char> contents(const Value& value) {
  return std::vector<unsigned char>(value.data(), value.data() + value.size());
}

}  // namespace

TEST(ValueTest, DefaultAndZeroSizedValuesAreNullAndEqual) {
  const Value empty;
  const Value zero(0u);
  const Value zeroFromBytes(0u, kBytes);
  for (const Value* value : {&empty, &zero, &zeroFromBytes}) {
    EXPECT_TRUE(value->isNull());
    EXPECT_EQ(value->data(), nullptr);
    EXPECT_EQ(value->capacity(), 0u);
    EXPECT_EQ(*value, empty);
  }
}

TEST(ValueTest, SizedConstructorsHoldZerosOrTheGivenBytes) {
  const Value zeros(4u);
  EXPECT_FALSE(zeros.isNull());
  EXPECT_EQ(zeros.capacity(), 4u);
  EXPECT_EQ(contents(zeros), std::vector<unsigned char>(4, 0));
  EXPECT_EQ(contents(Value(3u, nullptr)), std::vector<unsigned char>(3, 0));
  EXPECT_EQ(contents(Value(2u, kBytes)), (std::vector<unsigned char>{0x11, 0x22}));
}

TEST(ValueTest, KeepsOldBytesWhenResizedWithinCapacity) {
  Value value;
  value.setData(4, kBytes);
  const unsigned char* buffer = value.data();
  value.setSize(2);
  EXPECT_EQ(value.size(), 2u);
  EXPECT_EQ(value.capacity(), 4u);
  EXPECT_EQ(value.data(), buffer);
  value.setSize(4);
  EXPECT_EQ(contents(value), (std::vector<unsigned char>{0x11, 0x22, 0x33, 0x44}));
  value.setData(3, nullptr);  // only resizes
  EXPECT_EQ(contents(value), (std::vector<unsigned char>{0x11, 0x22, 0x33}));
}

TEST(ValueTest, GrowingBeyondCapacityLosesOldBytes) {
  Value value(2u, kBytes);
  value.setSize(5);
  EXPECT_EQ(value.capacity(), 5u);
  EXPECT_EQ(contents(value), std::vector<unsigned char>(5, 0));
}

TEST(ValueTest, ReleasesBufferOnSizeZeroAndPurge) {
  Value value(4u, kBytes);
  value.setSize(0);
  EXPECT_EQ(value.data(), nullptr);
  EXPECT_EQ(value.capacity(), 0u);
  value.setData(2, kBytes);
  value.purge();
  EXPECT_TRUE(value.isNull() && value.data() == nullptr && value.capacity() == 0);
}

TEST(ValueTest, ComparesSizeAndBytesButNotCapacity) {
  Value wide(5u, kBytes);
  wide.setSize(2);
  EXPECT_EQ(wide, Value(2u, kBytes));
  EXPECT_NE(Value(3u, kBytes), Value(2u, kBytes));
  EXPECT_NE(Value(2u, kBytes), Value(2u, kBytes + 1));
  EXPECT_NE(Value(1u), Value());  // a zero byte is not null
}

TEST(ValueTest, SetsTextWithTerminatingZeroByteEvenInReusedBuffer) {
  Value value;
  value.setData(std::string("AB"));
  EXPECT_EQ(contents(value), (std::vector<unsigned char>{'A', 'B', 0}));
  value.setData(std::string());
  EXPECT_EQ(value.size(), 1u);
  EXPECT_FALSE(value.isNull());
  EXPECT_EQ(value.data()[0], 0);
  value.setData(std::string("WXYZ"));
  value.setData(std::string("AB"));  // within the capacity: the terminator must be written
  EXPECT_EQ(value.capacity(), 5u);
  EXPECT_EQ(contents(value), (std::vector<unsigned char>{'A', 'B', 0}));
  value.setData(std::string("WXYZ"));
  value.setData(std::string("A\0B", 3));  // cut at the zero character, rest zero
  EXPECT_EQ(contents(value), (std::vector<unsigned char>{'A', 0, 0, 0}));
}

TEST(ValueTest, CopyGetsExactSizeAndOwnBuffer) {
  Value source(5u, kBytes);
  source.setSize(2);
  Value copy(source);
  EXPECT_EQ(copy, source);
  EXPECT_EQ(copy.capacity(), 2u);
  copy.data()[0] = 0x99;
  EXPECT_EQ(source.data()[0], 0x11);
  EXPECT_EQ(Value(Value()).data(), nullptr);
}

TEST(ValueTest, AssignmentKeepsLargerBuffer) {
  Value target(5u, kBytes);
  const unsigned char* buffer = target.data();
  const Value source(2u, kBytes + 3);
  target = source;
  EXPECT_EQ(target.data(), buffer);
  EXPECT_EQ(target.capacity(), 5u);
  EXPECT_EQ(contents(target), (std::vector<unsigned char>{0x44, 0x55}));
  Value& self = target;
  target = self;
  EXPECT_EQ(contents(target), (std::vector<unsigned char>{0x44, 0x55}));
  const Value null;
  target = null;  // releases the buffer
  EXPECT_EQ(target.data(), nullptr);
}

TEST(ValueTest, MoveTakesBufferAndLeavesSourceNull) {
  Value source(3u, kBytes);
  const unsigned char* buffer = source.data();
  Value moved(std::move(source));
  EXPECT_EQ(moved.data(), buffer);
  EXPECT_EQ(source.data(), nullptr);  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(source.capacity(), 0u);
  Value target(1u);
  target = std::move(moved);
  EXPECT_EQ(target.data(), buffer);
  EXPECT_EQ(target.size(), 3u);
  EXPECT_TRUE(moved.isNull());  // NOLINT(bugprone-use-after-move)
}
