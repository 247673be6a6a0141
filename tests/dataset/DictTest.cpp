#include "support/QuiltraTestSupport.h"
#include "support/TestDict.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>

#include <quiltra/dataset/Dict.h>
#include <quiltra/io/LoadLibraryDelegate.h>

using Quiltra::Dict;
using Quiltra::TagId;
using QuiltraTest::TestDict;

namespace {

// Counts postInitialize and the lookups by tag, so that tests see how often each runs.
class CountingDict : public TestDict {
 public:
  void postInitialize() const override { ++postInitializeCalls; }
  Quiltra::TagInfo tagInfo(const std::string& name) const override {
    ++lookups;
    return TestDict::tagInfo(name);
  }
  Quiltra::TagInfo tagInfo(const TagId& id) const override {
    ++lookups;
    return TestDict::tagInfo(id);
  }
  mutable int postInitializeCalls = 0;
  mutable int lookups = 0;
};

// Stands for the host: "loads the dictionary module", which installs its dictionary.
class InstallingDelegate : public Quiltra_Utils::LoadLibraryDelegate {
 public:
  void loadLibraries() override {
    ++calls;
    if (dict) TestDict::install(dict);
  }
  std::shared_ptr<const CountingDict> dict = std::make_shared<CountingDict>();
  int calls = 0;
};

class DictTest : public testing::Test {
 protected:
  void SetUp() override { TestDict::install(nullptr); }
  void TearDown() override {
    TestDict::install(nullptr);
    Quiltra_Utils::setDefaultLoadLibraryDelegate(nullptr);
  }
};

}  // namespace

TEST_F(DictTest, LoadsThroughDelegateAndPostInitializesOnce) {
  InstallingDelegate delegate;
  const std::shared_ptr<const Dict> first = Dict::singleton(&delegate);
  EXPECT_EQ(first, delegate.dict);
  EXPECT_EQ(delegate.calls, 1);
  EXPECT_EQ(delegate.dict->postInitializeCalls, 1);

  EXPECT_EQ(Dict::singleton(&delegate), first);
  EXPECT_EQ(Dict::singleton(nullptr), first);
  EXPECT_EQ(delegate.calls, 1);
  EXPECT_EQ(delegate.dict->postInitializeCalls, 1);
}

TEST_F(DictTest, ReturnsEmptyWhenLoadingInstallsNothing) {
  EXPECT_EQ(Dict::singleton(nullptr), nullptr);
  InstallingDelegate delegate;
  delegate.dict = nullptr;
  EXPECT_EQ(Dict::singleton(&delegate), nullptr);
  EXPECT_EQ(Dict::singleton(&delegate), nullptr);
  EXPECT_EQ(delegate.calls, 2);  // nothing current, so every call loads again
}

TEST_F(DictTest, LoadsThroughDefaultDelegateWhenGivenNone) {
  InstallingDelegate delegate;
  Quiltra_Utils::setDefaultLoadLibraryDelegate(&delegate);
  EXPECT_EQ(Dict::singleton(nullptr), delegate.dict);
  EXPECT_EQ(delegate.dict->postInitializeCalls, 1);
}

TEST_F(DictTest, ReturnsInstalledDictionaryWithoutPostInitialize) {
  const auto installed = std::make_shared<CountingDict>();
  TestDict::install(installed);
  InstallingDelegate delegate;
  EXPECT_EQ(Dict::singleton(&delegate), installed);
  EXPECT_EQ(delegate.calls, 0);
  EXPECT_EQ(installed->postInitializeCalls, 0);
}

TEST_F(DictTest, KeepsEarlierCopyAfterReplacement) {
  InstallingDelegate delegate;
  const std::shared_ptr<const Dict> old = Dict::singleton(&delegate);
  const auto replacement = std::make_shared<CountingDict>();
  TestDict::install(replacement);
  EXPECT_EQ(Dict::singleton(&delegate), replacement);
  EXPECT_EQ(old, delegate.dict);
  delegate.dict = nullptr;
  TestDict::install(nullptr);
  EXPECT_TRUE(old->isTagNameKnown("Rows"));  // the copy alone keeps the old one alive
  EXPECT_EQ(replacement->postInitializeCalls, 0);
}

TEST_F(DictTest, AccessorsGiveTagInfoFieldsAndQueriesForward) {
  const CountingDict dict;
  EXPECT_EQ(dict.vr(TagId(0x0028, 0x0010)), Quiltra::US);
  EXPECT_EQ(dict.multiplicity(TagId(0x0008, 0x0005)), std::make_pair(1u, 0xFFFFFFFFu));
  EXPECT_EQ(dict.name(TagId(0x0010, 0x0010)), "PatientName");
  EXPECT_EQ(dict.tagId("Modality"), TagId(0x0008, 0x0060));
  EXPECT_EQ(dict.lookups, 4);
  EXPECT_TRUE(dict.isTagIdKnown(TagId(0x0010, 0x0010)));
  EXPECT_FALSE(dict.isTagIdKnown(TagId(0x0010, 0x0011)));
  EXPECT_TRUE(dict.isTagNameKnown("PatientID"));
  EXPECT_FALSE(dict.isTagNameKnown("patientid"));
  QuiltraTest::expectQuiltraError([&] { dict.name(TagId(0x0009, 0x0001)); }, "TestDict::tagInfo",
                                  "unknown tag");
}
