#include <gtest/gtest.h>

#include <quiltra/io/LoadLibraryDelegate.h>

using Quiltra_Utils::configLoadLibraries;
using Quiltra_Utils::LoadLibraryDelegate;
using Quiltra_Utils::setDefaultLoadLibraryDelegate;

namespace {

class CountingDelegate : public LoadLibraryDelegate {
 public:
  void loadLibraries() override { ++calls; }
  int calls = 0;
};

// Leaves no default delegate behind for the next test.
class LoadLibraryDelegateTest : public testing::Test {
 protected:
  void TearDown() override { setDefaultLoadLibraryDelegate(nullptr); }
};

}  // namespace

TEST_F(LoadLibraryDelegateTest, CallsDelegateOncePerCall) {
  CountingDelegate delegate;
  configLoadLibraries(&delegate);
  EXPECT_EQ(delegate.calls, 1);
  configLoadLibraries(&delegate);
  EXPECT_EQ(delegate.calls, 2);
}

TEST_F(LoadLibraryDelegateTest, PrefersGivenDelegateOverDefault) {
  CountingDelegate fallback;
  CountingDelegate given;
  setDefaultLoadLibraryDelegate(&fallback);
  configLoadLibraries(&given);
  EXPECT_EQ(given.calls, 1);
  EXPECT_EQ(fallback.calls, 0);
  configLoadLibraries(nullptr);
  EXPECT_EQ(fallback.calls, 1);
  EXPECT_EQ(given.calls, 1);
}

TEST_F(LoadLibraryDelegateTest, DoesNothingWithoutAnyDelegate) {
  configLoadLibraries(nullptr);
  CountingDelegate fallback;
  setDefaultLoadLibraryDelegate(&fallback);
  setDefaultLoadLibraryDelegate(nullptr);
  configLoadLibraries(nullptr);
  EXPECT_EQ(fallback.calls, 0);
}
