#include <cstddef>
#include <gtest/gtest.h>
#include <string>
#include <utility>

#include <quiltra/element/ValueList.h>

namespace Quiltra {
namespace {

// A list of count values "1", "2", ... in order.
ValueList listOf(int count) {
  ValueList list;
  for (int index = 1; index <= count; ++index) list.emplaceBack().setData(std::to_string(index));
  return list;
}

std::string joined(const ValueList& list) {
  std::string text;
  for (std::size_t index = 0; index < list.size(); ++index) {
    text += reinterpret_cast<const char*>(list[index].data());
  }
  return text;
}

// The first value lives inside the list and the others behind a pointer made on demand:
// assignment between lists of every size must give independent, complete copies.
TEST(ValueListTest, AssignsDeepCopiesBetweenListsOfAnySize) {
  for (int from = 0; from <= 3; ++from) {
    for (int to = 0; to <= 3; ++to) {
      const ValueList source = listOf(from);
      ValueList target = listOf(to);
      target = source;
      target = std::as_const(target);
      EXPECT_EQ(joined(target), joined(listOf(from))) << from << " onto " << to;
      if (from > 0) target[from - 1].setData("x");
      EXPECT_EQ(joined(source), joined(listOf(from)));
      ValueList moved = listOf(to);
      moved = std::move(target);
      EXPECT_TRUE(target.empty());  // NOLINT(bugprone-use-after-move)
      EXPECT_EQ(moved.size(), static_cast<std::size_t>(from));
    }
  }
}

}  // namespace
}  // namespace Quiltra
