#include <gtest/gtest.h>
#include <string>

#include <quiltra/core/Value.h>

using Quiltra::Value;

const unsigned char kBytes[] = {0x11, 0x22, 0x33, 0x44, 0x55};
const unsigned char kText[] = {'A', 'B', 0, 'A', 0, 0, 0};  // "AB" and "A\0B" as set

TEST(ValueTest, ResizesWithinCapacityKeepingOldBytesAndBeyondItLosingThem) {
  EXPECT_TRUE(Value(0u, kBytes).data() == nullptr && Value(0u) == Value() && Value(1u) != Value());
  EXPECT_TRUE(Value(3u, nullptr) == Value(3u) && Value(3u).data()[2] == 0);  // zero-filled
  Value value(4u, kBytes);
  value.setSize(2);
  EXPECT_TRUE(value == Value(2u, kBytes) && value.capacity() == 4 && value != Value(2u, kText));
  value.setData(4, nullptr);  // only resizes: the old bytes show again
  EXPECT_EQ(value, Value(4u, kBytes));
  value.setSize(5);
  EXPECT_TRUE(value == Value(5u) && value.capacity() == 5);
  value.setSize(0);
  EXPECT_TRUE(value.isNull() && value.data() == nullptr && value.capacity() == 0);
  value.setData(2, kBytes);
  value.purge();
  EXPECT_TRUE(value.data() == nullptr && value.capacity() == 0);
}

TEST(ValueTest, SetsTextWithTerminatingZeroAndCopiesExactSizeButAssignsIntoLargerBuffer) {
  Value value;
  value.setData(std::string());
  EXPECT_EQ(value, Value(1u));  // one zero byte, not null
  value.setData(std::string("WXYZ"));
  value.setData(std::string("AB"));
  EXPECT_TRUE(value == Value(3u, kText) && value.capacity() == 5);
  value.setData(std::string("A\0B", 3));  // cut at the zero character, the stale Z cleared
  EXPECT_EQ(value, Value(4u, kText + 3));
  const Value copy(value);
  EXPECT_TRUE(copy == value && copy.capacity() == 4 && copy.data() != value.data());
  Value target(8u);
  target = copy;
  EXPECT_TRUE(target == copy && target.capacity() == 8);
}

// Buffers up to the inline limit live inside the object; the size and capacity rules and
// the bytes must not depend on where the buffer is.
TEST(ValueTest, KeepsSizeCapacityAndBytesAcrossTheInlineLimit) {
  constexpr unsigned int kLimit = Value::kInlineCapacity;
  std::string text(kLimit + 8, 'x');
  for (unsigned int i = 0; i < text.size(); ++i) text[i] = static_cast<char>('a' + i % 26);
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  Value value(kLimit, bytes);
  value.setSize(2);
  value.setSize(kLimit);  // within the inline capacity: the old bytes show again
  EXPECT_TRUE(value == Value(kLimit, bytes) && value.capacity() == kLimit);
  value.setSize(kLimit + 1);  // beyond it: a fresh zeroed buffer on the heap
  EXPECT_TRUE(value == Value(kLimit + 1) && value.capacity() == kLimit + 1);
  value.setData(kLimit + 1, bytes);
  value.setSize(3);  // a heap buffer is kept when shrinking
  EXPECT_TRUE(value == Value(3u, bytes) && value.capacity() == kLimit + 1);
  Value small(3u, bytes);
  small = Value(kLimit + 8, bytes);  // a moved heap buffer
  EXPECT_TRUE(small == Value(kLimit + 8, bytes) && small.capacity() == kLimit + 8);
  Value moved(std::move(value));  // a moved heap buffer reused within its capacity
  EXPECT_TRUE(moved == Value(3u, bytes) && moved.capacity() == kLimit + 1);
  EXPECT_TRUE(value.isNull() && value.data() == nullptr && value.capacity() == 0);
  Value inlineSource(kLimit, bytes);
  Value inlineMoved(std::move(inlineSource));
  EXPECT_TRUE(inlineMoved == Value(kLimit, bytes) && inlineSource.data() == nullptr);
  inlineMoved = Value(1u, bytes);  // moved inline bytes replace a buffer of the same kind
  EXPECT_TRUE(inlineMoved == Value(1u, bytes) && inlineMoved.capacity() == 1);
  Value target(kLimit + 4);
  const Value two(2u, bytes);
  target = two;  // copy assignment keeps the larger heap buffer
  EXPECT_TRUE(target == Value(2u, bytes) && target.capacity() == kLimit + 4);
}
