#include "support/TestDict.h"

#include <gtest/gtest.h>
#include <memory>

#include <quiltra/dataset/Dict.h>
#include <quiltra/io/LoadLibraryDelegate.h>

using Quiltra::Dict;
using QuiltraTest::TestDict;

namespace {

// Plays both the host's delegate and the dictionary module it loads, counting both steps.
struct Module : TestDict, Quiltra_Utils::LoadLibraryDelegate, std::enable_shared_from_this<Module> {
  void loadLibraries() override {
    ++loads;
    if (installs) install(shared_from_this());
  }
  void postInitialize() const override { ++postInitializations; }
  bool installs = true;
  int loads = 0;
  mutable int postInitializations = 0;
};

}  // namespace

TEST(DictTest, LoadsUntilADictionaryIsCurrentAndPostInitializesOnlyWhatItLoaded) {
  const auto installed = std::make_shared<Module>();
  const auto module = std::make_shared<Module>();
  TestDict::install(installed);
  EXPECT_EQ(Dict::singleton(module.get()), installed);  // returned as it is
  EXPECT_TRUE(module->loads == 0 && installed->postInitializations == 0);
  TestDict::install(nullptr);
  EXPECT_EQ(Dict::singleton(nullptr), nullptr);  // no delegate at all
  module->installs = false;
  EXPECT_EQ(Dict::singleton(module.get()), nullptr);
  module->installs = true;
  Quiltra_Utils::setDefaultLoadLibraryDelegate(module.get());
  EXPECT_EQ(Dict::singleton(nullptr), module);  // through the default delegate
  EXPECT_TRUE(Dict::singleton(module.get()) == module && Dict::singleton(nullptr) == module);
  EXPECT_TRUE(module->loads == 2 && module->postInitializations == 1);
  Quiltra_Utils::setDefaultLoadLibraryDelegate(nullptr);
  TestDict::install(nullptr);
}
