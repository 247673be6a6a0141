#include <gtest/gtest.h>

#include <quiltra/io/LoadLibraryDelegate.h>

namespace {

struct CountingDelegate : Quiltra_Utils::LoadLibraryDelegate {
  void loadLibraries() override { ++calls; }
  int calls = 0;
};

}  // namespace

TEST(LoadLibraryDelegateTest, CallsGivenDelegateOncePerCallBeforeTheDefault) {
  CountingDelegate given;
  CountingDelegate fallback;
  Quiltra_Utils::setDefaultLoadLibraryDelegate(&fallback);
  Quiltra_Utils::configLoadLibraries(&given);
  Quiltra_Utils::configLoadLibraries(&given);
  Quiltra_Utils::setDefaultLoadLibraryDelegate(nullptr);
  EXPECT_TRUE(given.calls == 2 && fallback.calls == 0);
}
