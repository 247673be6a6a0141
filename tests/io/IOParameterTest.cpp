#include "support/LoadingDelegate.h"
#include "support/QuiltraTestSupport.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>

#include <quiltra/io/IOParameter.h>

using namespace Quiltra;
using QuiltraTest::expectQuiltraError;
using QuiltraTest::LoadingDelegate;

namespace {

// A concrete selection that remembers what it was made from.
class TestSelection : public IOParameter {
 public:
  TestSelection() = default;
  TestSelection(std::string text, bool first, bool second, bool third)
      : _text(std::move(text)), _flags{first, second, third} {}

  std::string text() const override { return _text; }
  bool firstFlag() const override { return _flags[0]; }
  bool secondFlag() const override { return _flags[1]; }
  bool thirdFlag() const override { return _flags[2]; }
  std::shared_ptr<IOParameter> createInstance(const std::string& text, bool first, bool second,
                                              bool third) const override {
    return std::make_shared<TestSelection>(text, first, second, third);
  }

  static void registerPrototype(std::shared_ptr<const IOParameter> prototype) {
    setPrototype(std::move(prototype));
  }
  static std::shared_ptr<const IOParameter> registered() { return prototype(); }

 private:
  std::string _text;
  bool _flags[3] = {false, false, false};
};

TagId id(unsigned short group, unsigned short element) {
  return TagId(group, element);
}

}  // namespace

TEST(IOParameterTest, EmptySelectionProcessesEveryTagAndRepresentation) {
  const TestSelection all;
  for (unsigned int raw : {0u, 0x00100010u, 0x7FE00010u, 0xFFFFFFFFu}) {
    EXPECT_TRUE(all.processTagId(TagId(raw))) << raw;
  }
  for (int code = AE; code <= UN; ++code) {
    EXPECT_TRUE(all.process(TagInfo(id(0x0010, 0x0010), "", static_cast<Vr>(code), {1, 1})));
  }
}

TEST(IOParameterTest, ProcessListWinsOverIgnoreList) {
  TestSelection selection;
  selection.tag_Ids_ToIgnore() = {id(0x0010, 0x0010)};
  EXPECT_FALSE(selection.processTagId(id(0x0010, 0x0010)));
  EXPECT_TRUE(selection.processTagId(id(0x0010, 0x0020)));

  selection.tag_Ids_ToIgnore() = {id(0x0010, 0x0020)};
  selection.tag_Ids_ToProcess() = {id(0x0010, 0x0020)};
  EXPECT_TRUE(selection.processTagId(id(0x0010, 0x0020)));
  EXPECT_FALSE(selection.processTagId(id(0x0010, 0x0010)));

  // The same rule for representations, through the static form.
  EXPECT_FALSE(IOParameter::processVR({PN}, {}, PN));
  EXPECT_TRUE(IOParameter::processVR({PN}, {}, LO));
  EXPECT_TRUE(IOParameter::processVR({PN}, {PN}, PN));
  EXPECT_FALSE(IOParameter::processVR({}, {OB}, OW));
}

TEST(IOParameterTest, RangeIncludesLowerBoundAndExcludesUpperBound) {
  TestSelection selection;
  selection.tagId_Interval() = {TagId::create(0x0008, 0x0000), TagId::create(0x0010, 0x0000)};
  EXPECT_TRUE(selection.processTagId(id(0x0008, 0x0000)));
  EXPECT_TRUE(selection.processTagId(id(0x0008, 0xFFFF)));
  EXPECT_FALSE(selection.processTagId(id(0x0010, 0x0000)));
  EXPECT_FALSE(selection.processTagId(id(0x0007, 0xFFFF)));

  // The range applies on top of the lists: a listed tag outside it is not processed.
  selection.tag_Ids_ToProcess() = {id(0x0008, 0x0060), id(0x0010, 0x0010)};
  EXPECT_TRUE(selection.processTagId(id(0x0008, 0x0060)));
  EXPECT_FALSE(selection.processTagId(id(0x0010, 0x0010)));
  EXPECT_FALSE(selection.processTagId(id(0x0008, 0x0070)));

  const IOParameter::TagIdInterval fromRows{TagId::create(0x0028, 0x0000), nullptr};
  EXPECT_TRUE(IOParameter::processTagId({}, {}, fromRows, id(0x0028, 0x0000)));
  EXPECT_TRUE(IOParameter::processTagId({}, {}, fromRows, TagId(0xFFFFFFFFu)));
  EXPECT_FALSE(IOParameter::processTagId({}, {}, fromRows, id(0x0027, 0xFFFF)));
}

TEST(IOParameterTest, ProcessAsksTheTagListsOnlyForAnAllowedRepresentation) {
  TestSelection selection;
  selection.vrs_ToProcess() = {OB, OW};
  selection.tag_Ids_ToProcess() = {id(0x0010, 0x0010), id(0x7FE0, 0x0010)};
  EXPECT_FALSE(selection.process(TagInfo(id(0x0010, 0x0010), "PatientName", PN, {1, 1})));
  EXPECT_TRUE(selection.process(TagInfo(id(0x7FE0, 0x0010), "PixelData", OW, {1, 1})));
  EXPECT_FALSE(selection.process(TagInfo(id(0x0009, 0x1010), "", OB, {1, 1})));
}

TEST(IOParameterTest, CopiesKeepBoundsOfTheirOwn) {
  TestSelection source;
  source.tagId_Interval() = {TagId::create(0x0008, 0x0000), TagId::create(0x0010, 0x0000)};
  source.tag_Ids_ToIgnore() = {id(0x0008, 0x0060)};
  source.vrs_ToIgnore() = {SQ};
  TestSelection copied(source);
  TestSelection assigned;
  assigned.tagId_Interval().first = TagId::create(0x7FE0, 0x0000);
  assigned = source;

  source.tagId_Interval().first->rawId() = 0x00200000u;
  source.tagId_Interval().second->rawId() = 0x00300000u;
  source.tag_Ids_ToIgnore().clear();
  for (const IOParameter* copy :
       {static_cast<const IOParameter*>(&copied), static_cast<const IOParameter*>(&assigned)}) {
    EXPECT_EQ(*copy->tagId_Interval().first, id(0x0008, 0x0000));
    EXPECT_EQ(*copy->tagId_Interval().second, id(0x0010, 0x0000));
    EXPECT_EQ(copy->tag_Ids_ToIgnore(), std::vector<TagId>{id(0x0008, 0x0060)});
    EXPECT_EQ(copy->vrs_ToIgnore(), std::vector<Vr>{SQ});
    EXPECT_FALSE(copy->processTagId(id(0x0008, 0x0060)));
  }

  // Open bounds stay open, and assigning a selection to itself changes nothing.
  TestSelection open;
  open.tagId_Interval().second = TagId::create(0x0010, 0x0000);
  TestSelection& alias = open;
  open = alias;
  const TestSelection openCopy(open);
  EXPECT_FALSE(openCopy.tagId_Interval().first);
  EXPECT_NE(openCopy.tagId_Interval().second, open.tagId_Interval().second);
  EXPECT_EQ(*open.tagId_Interval().second, id(0x0010, 0x0000));
}

TEST(IOParameterTest, CreateLoadsModulesOnceAndAsksThePrototype) {
  TestSelection::registerPrototype(nullptr);
  expectQuiltraError([] { IOParameter::create("x", true, false, true); }, "IOParameter::create",
                     "no prototype registered");
  {
    LoadingDelegate registersNothing;
    expectQuiltraError([] { IOParameter::create("x", true, false, true); }, "IOParameter::create",
                       "no prototype registered");
    EXPECT_EQ(registersNothing.loads, 1);
  }
  const auto prototype = std::make_shared<TestSelection>();
  LoadingDelegate loader([&] { TestSelection::registerPrototype(prototype); });
  const auto made = IOParameter::create("PatientName only", true, false, true);
  const auto again = IOParameter::create("", false, true, false);
  EXPECT_EQ(loader.loads, 1);
  EXPECT_EQ(TestSelection::registered(), prototype);
  ASSERT_TRUE(made && again);
  EXPECT_NE(made, again);
  EXPECT_EQ(made->text(), "PatientName only");
  EXPECT_TRUE(made->firstFlag() && !made->secondFlag() && made->thirdFlag());
  EXPECT_TRUE(!again->firstFlag() && again->secondFlag() && !again->thirdFlag());
  TestSelection::registerPrototype(nullptr);
}
