#include "support/AllocationWatch.h"
#include "support/QuiltraTestSupport.h"

#include <gtest/gtest.h>
#include <utility>
#include <vector>

#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>

namespace Quiltra {
namespace {

using QuiltraTest::expectQuiltraError;

const TagId kTextId(0x0010, 0x0010);

// A sequence of count items, each holding a CS element (0010,0010) with the text "A".
Tag sequenceOf(int count, const TagId& id = TagId(0x0008, 0x1115)) {
  auto element = std::make_shared<Tag>(TagInfo(kTextId, "Text", CS, {1, 1}));
  element->addValue(std::string("A"));
  Tag tag(TagInfo(id, "Items", SQ, {1, 1}));
  for (; count > 0; --count) (tag.addSequenceItem() = std::make_shared<Tree>())->addTag(element);
  return tag;
}

TEST(TagTest, ChecksEveryIndexAndTheRepresentationBeforeAnItemIndex) {
  Tag tag(TagInfo(kTextId, "Text", CS, {1, 1}));
  for (auto call : {+[](Tag& t) { t.isNull(0); }, +[](Tag& t) { t.getValue(0); },
                    +[](Tag& t) { t.getValueSize(0); }, +[](Tag& t) { t.setValue(Value(), 0); }}) {
    expectQuiltraError([&] { call(tag); }, "Tag::rangeChecking", "index out of range");
  }
  for (auto call : {+[](Tag& t) { t.sequenceItems(); }, +[](Tag& t) { t.dropSequenceItem(7); },
                    +[](Tag& t) { std::as_const(t).sequenceItems(); },
                    +[](Tag& t) { t.setSequenceItem(nullptr, 7); },
                    +[](Tag& t) { t.addSequenceItem(nullptr); }}) {
    expectQuiltraError([&] { call(tag); }, "Tag::typeChecking", "illegal type");
  }
  Tag sequence = sequenceOf(1);
  for (auto call :
       {+[](Tag& t) { t.isSequenceItemNull(1); }, +[](Tag& t) { t.dropSequenceItem(1); },
        +[](Tag& t) { t.setSequenceItem(nullptr, 1); }}) {
    expectQuiltraError([&] { call(sequence); }, "Tag::sequenceRangeChecking", "index out of range");
  }
}

TEST(TagTest, KeepsValueAndItemSlotsInPlace) {
  Tag tag = sequenceOf(3);
  EXPECT_TRUE(tag.addValue().isNull());
  tag.addValue().setData("AB");
  tag.setValue(tag.getValue(1), 0);
  EXPECT_EQ(tag.getValueSize(), 6u);  // terminating zeros count
  tag.dropSequenceItem(1);
  EXPECT_TRUE(tag.isSequenceItemNull(1) && !tag.isSequenceItemNull(2));
  auto item = std::make_shared<Tree>();
  tag.setSequenceItem(item, 1);
  EXPECT_EQ(tag.sequenceItems()[1], item);            // shared, not copied
  tag.setInfo(TagInfo(kTextId, "Text", CS, {1, 1}));  // keeps items, ends sequence access
  expectQuiltraError([&] { tag.sequenceItems(); }, "Tag::typeChecking", "illegal type");
  tag.addSequenceItem() = item;  // no representation check
  EXPECT_TRUE(tag.numberOfSequenceItems() == 4u && !tag.isSequenceItemNull(3));
  tag.dropValues();
  EXPECT_FALSE(tag.isEmpty());
  tag.dropSequenceItems();
  EXPECT_TRUE(tag.isEmpty());
}

// The first value is stored apart from the others: order, copies, moves and a restart after
// dropValues must not depend on where a value lives.
TEST(TagTest, KeepsValuesInOrderThroughCopiesMovesAndDrops) {
  Tag tag(TagInfo(kTextId, "Text", CS, {1, 3}));
  tag.addValue(std::string("A\\BB\\CCC"));
  tag.setValue(std::string("DDDD"), 0);
  EXPECT_TRUE(tag.numberOfValues() == 3u && tag.toString() == "DDDD\\BB\\CCC");
  const Tag copy(tag);
  Tag moved(std::move(tag));
  EXPECT_TRUE(moved.isEqual(copy, 0.0) && moved.getValueSize() == 12u);
  EXPECT_TRUE(tag.numberOfValues() == 0u && tag.isEmpty());  // NOLINT(bugprone-use-after-move)
  moved.dropValues();
  EXPECT_TRUE(moved.addValue().isNull() && moved.numberOfValues() == 1u);
  Tag assigned(TagInfo(kTextId, "Text", CS, {1, 3}));
  assigned.addValue(std::string("E"));
  assigned = copy;
  EXPECT_EQ(assigned.toString(), "DDDD\\BB\\CCC");
}

TEST(TagTest, CopiesDeeplyKeepingNullItemsNullAndSurvivesAliasing) {
  Tag source = sequenceOf(2);
  source.addSequenceItem();
  Tag assigned = sequenceOf(4);
  assigned = source;
  assigned = std::as_const(assigned);
  const Tag constructed(source);
  const std::shared_ptr<Tag> made = source.copy();
  for (const Tag* copy : {&std::as_const(assigned), &constructed, &std::as_const(*made)}) {
    EXPECT_TRUE(copy->isEqual(source, 0.0));
    EXPECT_NE(copy->sequenceItems()[0], source.sequenceItems()[0]);
    EXPECT_TRUE(copy->isSequenceItemNull(2));
  }
  made->sequenceItems()[0]->getTag_rw(kTextId)->setValue(std::string("B"), 0);
  EXPECT_EQ(source.sequenceItems()[0]->getTag(kTextId)->toString(0), "A");
  Tag tag = sequenceOf(1);  // assigning from an element that only its own items hold
  tag.sequenceItems()[0]->addTag(std::make_shared<Tag>(sequenceOf(2, kTextId)));
  const Tag* inner = tag.sequenceItems()[0]->getTag(kTextId).get();
  tag = *inner;  // releases the item that holds the source only after copying it
  EXPECT_TRUE(tag.isEqual(sequenceOf(2, kTextId), 0.0));
}

// Values past the first and the item list are kept out of line and made only when needed:
// every combination of none, one and several values, with and without items, must copy,
// assign and move the same way, and the source of a move ends empty.
TEST(TagTest, CopiesAssignsAndMovesWithAnyNumberOfValuesAndItems) {
  std::vector<Tag> shapes;
  for (const char* text : {"", "A", "A\\BB\\CCC"}) {
    for (int items : {0, 2}) {
      Tag tag = sequenceOf(items);
      tag.setInfo(TagInfo(kTextId, "Text", CS, {1, 3}));
      if (*text != '\0') tag.addValue(std::string(text));
      shapes.push_back(tag);
    }
  }
  for (const Tag& shape : shapes) {
    for (const Tag& previous : shapes) {
      Tag assigned = previous;
      assigned = shape;
      Tag moveAssigned = previous;
      Tag source = shape;
      moveAssigned = std::move(source);
      EXPECT_TRUE(source.isEmpty());  // NOLINT(bugprone-use-after-move)
      const Tag moved(std::move(assigned));
      EXPECT_TRUE(assigned.isEmpty());  // NOLINT(bugprone-use-after-move)
      for (const Tag* result : {&moved, &std::as_const(moveAssigned)}) {
        EXPECT_TRUE(result->isEqual(shape, 0.0) && result->toString() == shape.toString());
        EXPECT_EQ(result->numberOfSequenceItems(), shape.numberOfSequenceItems());
      }
    }
  }
  Tag copy = shapes.back();  // values are deep copies, items are copied trees
  copy.setValue(std::string("D"), 2);
  EXPECT_EQ(shapes.back().toString(), "A\\BB\\CCC");
  copy.setInfo(TagInfo(kTextId, "Text", SQ, {1, 3}));
  copy.sequenceItems()[1]->getTag_rw(kTextId)->setValue(std::string("B"), 0);
  shapes.back().setInfo(TagInfo(kTextId, "Text", SQ, {1, 3}));
  EXPECT_EQ(shapes.back().sequenceItems()[1]->getTag(kTextId)->toString(0), "A");
}

// A sequence without items answers an empty list; the first addition through any of the
// writable accessors makes the list, and clearing leaves an element that fills again.
TEST(TagTest, StartsItemsOnFirstAdditionAndRefillsAfterClearing) {
  const Tag none(TagInfo(kTextId, "Items", SQ, {1, 1}));
  EXPECT_TRUE(none.sequenceItems().empty() && none.isEmpty() && Tag(none).isEmpty());
  expectQuiltraError([&] { none.isSequenceItemNull(0); }, "Tag::sequenceRangeChecking",
                     "index out of range");
  Tag tag = none;
  for (auto call :
       {+[](Tag& t) { t.setSequenceItem(nullptr, 0); }, +[](Tag& t) { t.dropSequenceItem(0); }}) {
    expectQuiltraError([&] { call(tag); }, "Tag::sequenceRangeChecking", "index out of range");
  }
  const auto item = std::make_shared<Tree>();
  for (auto add : {+[](Tag&t, const std::shared_ptr<Tree>&i) { t.addSequenceItem(i); },
                   +[](Tag&t, const std::shared_ptr<Tree>&i) { t.addSequenceItem() = i; },
                   +[](Tag&t, const std::shared_ptr<Tree>&i) { t.sequenceItems().push_back(i); }}) {
    tag = none;
    add(tag, item);
    EXPECT_TRUE(tag.numberOfSequenceItems() == 1u && std::as_const(tag).sequenceItems()[0] == item);
    EXPECT_TRUE(none.sequenceItems().empty());
  }
  tag.addValue().setData("A");
  tag.addValue().setData("B");
  tag.dropSequenceItems();
  tag.dropValues();
  EXPECT_TRUE(tag.isEmpty() && tag.sequenceItems().empty() && tag.isEqual(none, 0.0));
  tag.addSequenceItem(item);
  tag.addValue();
  tag.addValue().setData("DD");
  EXPECT_TRUE(tag.numberOfSequenceItems() == 1u && tag.numberOfValues() == 2u);
  EXPECT_TRUE(tag.isNull(0) && tag.getValueSize() == 3u);
}

// Assignment once changed the description and the values before it copied the items, so a
// copy failing half-way left a half-assigned Tag. Every allocation of the copy is failed in
// turn: each failure leaves the target exactly as it was.
TEST(TagTest, AssignmentThatFailsLeavesTheTargetAsItWas) {
  const Tag source = sequenceOf(3);
  for (long failAt = 0;; ++failAt) {
    Tag target(TagInfo(kTextId, "Text", CS, {1, 1}));
    target.addValue(std::string("B"));
    const std::shared_ptr<Tree> item = std::make_shared<Tree>();
    target.addSequenceItem() = item;
    bool failed = false;
    QuiltraTest::allocationsBeforeFailure = failAt;
    try {
      target = source;
    } catch (...) {
      failed = true;
    }
    QuiltraTest::allocationsBeforeFailure = -1;
    if (!failed) {
      EXPECT_TRUE(target.isEqual(source, 0.0));
      EXPECT_GT(failAt, 6);  // the copy allocates items, elements and values
      break;
    }
    EXPECT_EQ(target.info().name() + target.toString(), "TextB") << "failed at " << failAt;
    EXPECT_EQ(target.numberOfSequenceItems(), 1u);
    target.setInfo(TagInfo(kTextId, "Text", SQ, {1, 1}));
    EXPECT_EQ(target.sequenceItems()[0], item);
  }
}

}  // namespace
}  // namespace Quiltra
