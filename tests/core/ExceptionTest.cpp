#include <gtest/gtest.h>
#include <memory>
#include <type_traits>
#include <utility>

#include <quiltra/core/Exception.h>

using Quiltra::Exception;

TEST(ExceptionTest, PrintsTheChainAsItWasWhenBuilt) {
  Exception cause("Value::allocate", "out of memory");
  const Exception middle(cause, "Tag::setValue");
  cause = Exception(Exception("deeper"), "changed", "later");
  EXPECT_EQ(Exception(middle, "Host::build", "cannot build").toString(),
            "in Host::build because of cannot build\n"
            "caused by in Tag::setValue because of \n"
            "caused by in Value::allocate because of out of memory\n");
}

TEST(ExceptionTest, CopyAndAssignmentShareTheCauseObject) {
  auto original = std::make_unique<Exception>(Exception("inner", "x"), "outer", "y");
  Exception copy(*original);
  EXPECT_EQ(copy.cause(), original->cause());
  original.reset();
  EXPECT_EQ(copy.toString(), "in outer because of y\ncaused by in inner because of x\n");
  const std::weak_ptr<Exception> oldCause = copy.cause();
  const Exception source(Exception("new", "n"), "source", "s");
  copy = source;
  EXPECT_TRUE(oldCause.expired());
  EXPECT_EQ(copy.cause(), source.cause());
  EXPECT_EQ(copy.toString(), source.toString());
}

// Moves once copied the texts; they now take over texts and cause and cannot fail.
TEST(ExceptionTest, MovesTakeOverTextsAndCause) {
  static_assert(std::is_nothrow_move_constructible_v<Exception> &&
                std::is_nothrow_move_assignable_v<Exception>);
  Exception source(Exception("inner", "x"), "outer", "y");
  const std::shared_ptr<Exception> cause = source.cause();
  Exception moved(std::move(source));
  EXPECT_EQ(moved.cause(), cause);
  EXPECT_EQ(source.cause(), nullptr);
  Exception assigned("other");
  assigned = std::move(moved);
  EXPECT_EQ(assigned.cause(), cause);
  EXPECT_EQ(assigned.toString(), "in outer because of y\ncaused by in inner because of x\n");
}
