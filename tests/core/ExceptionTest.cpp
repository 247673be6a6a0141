#include <gtest/gtest.h>
#include <memory>
#include <string>

#include <quiltra/core/Exception.h>

using Quiltra::Exception;

TEST(ExceptionTest, KeepsMethodBeforeDescription) {
  const Exception error("Tag::rangeChecking", "index out of range");
  EXPECT_EQ(error.method(), "Tag::rangeChecking");
  EXPECT_EQ(error.description(), "index out of range");
  EXPECT_EQ(error.cause(), nullptr);

  const Exception wrapped(error, "Host::load", "bad file");
  EXPECT_EQ(wrapped.method(), "Host::load");
  EXPECT_EQ(wrapped.description(), "bad file");
  ASSERT_NE(wrapped.cause(), nullptr);
  EXPECT_EQ(wrapped.cause()->method(), "Tag::rangeChecking");
}

TEST(ExceptionTest, PrintsMethodAloneWithEmptyDescription) {
  EXPECT_EQ(Exception("toVr").toString(), "in toVr because of \n");
  EXPECT_EQ(Exception(Exception("toVr"), "Host::run").description(), "");
}

TEST(ExceptionTest, PrintsChainOfThreeAsThreeLines) {
  const Exception inner("Value::allocate", "out of memory");
  const Exception middle(inner, "Tag::setValue");
  const Exception outer(middle, "Host::build", "cannot build");
  EXPECT_EQ(outer.toString(),
            "in Host::build because of cannot build\n"
            "caused by in Tag::setValue because of \n"
            "caused by in Value::allocate because of out of memory\n");
}

TEST(ExceptionTest, CopyKeepsSharedCauseAfterOriginalDies) {
  auto original = std::make_unique<Exception>(Exception("inner", "x"), "outer", "y");
  const Exception copy(*original);
  EXPECT_EQ(copy.cause().get(), original->cause().get());
  original.reset();
  ASSERT_NE(copy.cause(), nullptr);
  EXPECT_EQ(copy.cause()->method(), "inner");
  EXPECT_EQ(copy.toString(), "in outer because of y\ncaused by in inner because of x\n");
}

TEST(ExceptionTest, CopiesCauseWhenBuilt) {
  Exception cause("first", "a");
  const Exception wrapped(cause, "outer");
  cause = Exception(Exception("deeper"), "second", "b");
  EXPECT_NE(wrapped.cause().get(), &cause);
  EXPECT_EQ(wrapped.toString(), "in outer because of \ncaused by in first because of a\n");
}

TEST(ExceptionTest, AssignmentSharesSourceCauseAndReleasesOwn) {
  Exception target(Exception("old"), "target", "t");
  const std::weak_ptr<Exception> oldCause = target.cause();
  const Exception source(Exception("new", "n"), "source", "s");
  target = source;
  EXPECT_TRUE(oldCause.expired());
  EXPECT_EQ(target.cause().get(), source.cause().get());
  EXPECT_EQ(target.toString(), source.toString());

  target = Exception("plain");
  EXPECT_EQ(target.cause(), nullptr);
  EXPECT_EQ(target.toString(), "in plain because of \n");
}
