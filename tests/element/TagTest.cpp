#include "support/QuiltraTestSupport.h"

#include <functional>
#include <gtest/gtest.h>
#include <initializer_list>
#include <memory>
#include <string>

#include <quiltra/core/TagInfo.h>
#include <quiltra/core/Value.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>

namespace Quiltra {
namespace {

using QuiltraTest::expectQuiltraError;

const TagId kNameId(0x0010, 0x0010);
const TagId kSequenceId(0x0008, 0x1115);

TagInfo infoOf(const TagId& id, Vr vr) {
  return TagInfo(id, "Sample", vr, {1, 1});
}

Value textValue(const std::string& text) {
  Value value;
  value.setData(text);
  return value;
}

std::shared_ptr<Tag> textTag(const TagId& id, const std::string& text) {
  auto tag = std::make_shared<Tag>(infoOf(id, CS));
  tag->addValue() = textValue(text);
  return tag;
}

// A sequence whose items each hold one CS element (0010,0010) with the given text.
Tag sequenceOf(std::initializer_list<const char*> texts) {
  Tag tag(infoOf(kSequenceId, SQ));
  for (const char* text : texts) {
    auto item = std::make_shared<Tree>();
    item->addTag(textTag(kNameId, text));
    tag.addSequenceItem(item);
  }
  return tag;
}

std::string itemText(const Tag& tag, unsigned int index) {
  const Value& value = tag.sequenceItems()[index]->getTag(kNameId)->getValue(0);
  return std::string(reinterpret_cast<const char*>(value.data()));
}

void expectRange(const std::function<void()>& call) {
  expectQuiltraError(call, "Tag::rangeChecking", "index out of range");
}
void expectSequenceRange(const std::function<void()>& call) {
  expectQuiltraError(call, "Tag::sequenceRangeChecking", "index out of range");
}
void expectIllegalType(const std::function<void()>& call) {
  expectQuiltraError(call, "Tag::typeChecking", "illegal type");
}

TEST(TagTest, NewTagIsEmptyAndRefusesEveryValueIndex) {
  Tag tag(infoOf(kNameId, CS));
  EXPECT_TRUE(tag.isEmpty());
  EXPECT_EQ(tag.info().id(), kNameId);
  EXPECT_EQ(tag.getValueSize(), 0u);
  expectRange([&] { tag.isNull(0); });
  expectRange([&] { tag.getValue(0); });
  expectRange([&] { tag.getValueSize(0); });
  expectRange([&] { tag.setValue(Value(), 0); });
  EXPECT_TRUE(Tag().isEmpty());
}

TEST(TagTest, AddValueAppendsANullValueToFillThroughTheReference) {
  Tag tag(infoOf(kNameId, CS));
  tag.addValue();
  EXPECT_EQ(tag.numberOfValues(), 1u);
  EXPECT_TRUE(tag.isNull(0));
  EXPECT_FALSE(tag.isEmpty());
  tag.addValue().setData("AB");
  EXPECT_FALSE(tag.isNull(1));
  EXPECT_EQ(tag.getValueSize(1), 3u);  // the terminating zero counts
  expectRange([&] { tag.isNull(2); });
  tag.setValue(textValue("CDEF"), 0);
  EXPECT_EQ(tag.getValue(0), textValue("CDEF"));
  EXPECT_EQ(tag.getValueSize(), 8u);
  tag.dropValues();
  EXPECT_TRUE(tag.isEmpty());
}

TEST(TagTest, SequenceAccessRefusesOtherRepresentationsBeforeCheckingTheIndex) {
  Tag tag(infoOf(kNameId, CS));
  const Tag& constTag = tag;
  auto item = std::make_shared<Tree>();
  expectIllegalType([&] { tag.sequenceItems(); });
  expectIllegalType([&] { constTag.sequenceItems(); });
  expectIllegalType([&] { tag.addSequenceItem(item); });
  expectIllegalType([&] { tag.setSequenceItem(item, 7); });
  expectIllegalType([&] { tag.dropSequenceItem(7); });
  EXPECT_EQ(tag.numberOfSequenceItems(), 0u);
  tag.addSequenceItem();  // no representation check
  EXPECT_EQ(tag.numberOfSequenceItems(), 1u);
  EXPECT_TRUE(tag.isSequenceItemNull(0));
  expectSequenceRange([&] { tag.isSequenceItemNull(1); });
  expectIllegalType([&] { tag.setSequenceItem(item, 0); });
}

TEST(TagTest, KeepsItemSlotsWhenDroppingOrReplacingOne) {
  Tag tag = sequenceOf({"A", "B", "C"});
  auto item = std::make_shared<Tree>();
  expectSequenceRange([&] { tag.setSequenceItem(item, 3); });
  expectSequenceRange([&] { tag.dropSequenceItem(3); });
  tag.dropSequenceItem(1);
  EXPECT_EQ(tag.numberOfSequenceItems(), 3u);
  EXPECT_FALSE(tag.isSequenceItemNull(0));
  EXPECT_TRUE(tag.isSequenceItemNull(1));
  EXPECT_FALSE(tag.isSequenceItemNull(2));
  tag.setSequenceItem(item, 1);
  EXPECT_EQ(tag.sequenceItems()[1], item);  // shared, not copied
  tag.addSequenceItem() = item;
  EXPECT_EQ(tag.sequenceItems()[3], item);
  tag.dropSequenceItems();
  EXPECT_TRUE(tag.isEmpty());
}

TEST(TagTest, SetInfoKeepsItemsButEndsSequenceAccess) {
  Tag tag = sequenceOf({"A"});
  tag.setInfo(infoOf(kSequenceId, CS));
  EXPECT_FALSE(tag.isSequence());
  EXPECT_EQ(tag.numberOfSequenceItems(), 1u);
  EXPECT_FALSE(tag.isSequenceItemNull(0));
  expectIllegalType([&] { tag.sequenceItems(); });
}

TEST(TagTest, NullCheckingRefusesANullValueWithAnEmptyDescription) {
  expectQuiltraError([] { nullChecking(Value()); }, "nullChecking", "");
  EXPECT_NO_THROW(nullChecking(Value(1)));
}

TEST(TagTest, CopiesAreDeepDownToTheItems) {
  const Tag source = sequenceOf({"A", "B"});
  Tag assigned(infoOf(kNameId, CS));
  assigned.addValue() = textValue("old");
  assigned = source;
  const Tag constructed(source);
  const std::shared_ptr<Tag> made = source.copy();
  const Tag* const copies[] = {&assigned, &constructed, made.get()};
  for (const Tag* copy : copies) {
    EXPECT_TRUE(copy->isEqual(source, 0.0));
    EXPECT_EQ(copy->numberOfValues(), 0u);
    EXPECT_NE(copy->sequenceItems()[0], source.sequenceItems()[0]);
    EXPECT_EQ(itemText(*copy, 1), "B");
  }
  made->sequenceItems()[0]->getTag_rw(kNameId)->setValue(textValue("changed"), 0);
  EXPECT_EQ(itemText(*made, 0), "changed");
  EXPECT_EQ(itemText(source, 0), "A");
  EXPECT_EQ(itemText(assigned, 0), "A");
}

TEST(TagTest, CopiesKeepNullItemsNull) {
  Tag source = sequenceOf({"A", "B", "C"});
  source.dropSequenceItem(1);
  const Tag copy(source);
  EXPECT_EQ(copy.numberOfSequenceItems(), 3u);
  EXPECT_FALSE(copy.isSequenceItemNull(0));
  EXPECT_TRUE(copy.isSequenceItemNull(1));
  EXPECT_EQ(itemText(copy, 2), "C");
}

TEST(TagTest, AssignmentFromItselfOrFromInsideItsOwnItemsIsSafe) {
  Tag tag = sequenceOf({"A"});
  Tag& self = tag;
  tag = self;
  EXPECT_EQ(itemText(tag, 0), "A");
  // The source lives in an item that the assignment releases.
  auto inner = std::make_shared<Tag>(sequenceOf({"inner"}));
  inner->setInfo(infoOf(kNameId, SQ));
  tag.sequenceItems()[0]->addTag(inner);
  const Tag* source = inner.get();
  inner.reset();
  tag = *source;
  EXPECT_EQ(tag.info().id(), kNameId);
  EXPECT_EQ(itemText(tag, 0), "inner");
}

}  // namespace
}  // namespace Quiltra
