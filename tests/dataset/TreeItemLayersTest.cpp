#include "support/AllocationWatch.h"
#include "support/QuiltraTestSupport.h"
#include "support/TestDict.h"
#include "support/TextElement.h"

#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <string>

#include <quiltra/quiltra.h>

namespace Quiltra {
namespace {

using QuiltraTest::expectQuiltraError;
using QuiltraTest::textElement;

// Per frame: (5200,9230) item i -> (0020,9111) item 0 -> (0020,9113) item 0, which holds
// the text "frame i" under (0020,0032) and the number i under (0020,9157).
const TagId kFrames(0x5200, 0x9230), kOuter(0x0020, 0x9111), kInner(0x0020, 0x9113);
const TagId kText(0x0020, 0x0032), kNumber(0x0020, 0x9157);

std::shared_ptr<Tag> sequence(const TagId& id, const std::string& name) {
  return std::make_shared<Tag>(TagInfo(id, name, SQ, {1, 1}));
}

std::shared_ptr<Tree> frames(unsigned int count) {
  auto root = std::make_shared<Tree>();
  auto perFrame = sequence(kFrames, "PerFrameFunctionalGroupsSequence");
  for (unsigned int i = 0; i < count; ++i) {
    auto leaf = std::make_shared<Tree>();
    leaf->addTag(textElement(kText, LO, "frame " + std::to_string(i)));
    auto number = std::make_shared<Tag>(TagInfo(kNumber, "DimensionIndexValues", UL, {1, 1}));
    number->addValue(i);
    leaf->addTag(number);
    auto inner = sequence(kInner, "PlanePositionSequence");
    inner->addSequenceItem(leaf);
    auto middle = std::make_shared<Tree>();
    middle->addTag(inner);
    auto outer = sequence(kOuter, "FrameContentSequence");
    outer->addSequenceItem(middle);
    auto item = std::make_shared<Tree>();
    item->addTag(outer);
    perFrame->addSequenceItem(item);
  }
  root->addTag(perFrame);
  return root;
}

const Tree::ItemPath kDeep = {{kFrames, 3}, {kOuter, 0}, {kInner, 0}};

// The item at path as tree's view shows it, or null.
std::shared_ptr<const Tree> itemAt(const Tree& tree, const Tree::ItemPath& path) {
  const Tree* at = &tree;
  std::shared_ptr<const Tree> item;
  for (const Tree::ItemStep& step : path) {
    item = at->getTag(step.sequence)->sequenceItems().at(step.index);
    at = item.get();
  }
  return item;
}

// The text under (0020,0032) in the item at path, or "-" when it has none.
std::string textAt(const Tree& tree, const Tree::ItemPath& path) {
  const auto text = itemAt(tree, path)->getTag(kText);
  return text ? text->toString() : "-";
}

std::string streamed(const Tree& tree) {
  std::ostringstream out;
  tree.toStream(out);
  return out.str();
}

std::shared_ptr<Tree> readBack(const Tree& tree) {
  Quiltra_Serialization::MemorySink sink;
  tree.serializeX(sink);
  Quiltra_Serialization::MemorySource source(sink.bytes());
  auto read = std::make_shared<Tree>();
  read->deserializeX(source);
  return read;
}

// The layered change leaves the parent as it was, shares every other item, and every
// reader of the child (lookups, merged copy, binary form) sees the change.
TEST(TreeItemLayersTest, ChangesOneItemThroughTheChildAndSharesTheOthers) {
  auto parent = frames(50);
  const std::string before = streamed(*parent);
  const Tag* parentFrames = parent->getTag(kFrames).get();
  auto child = std::make_shared<Tree>(parent);

  auto item = child->layerSequenceItem({{kFrames, 7}});
  item->setTag(textElement(kText, LO, "changed"));

  EXPECT_EQ(streamed(*parent), before);
  EXPECT_EQ(parent->getTag(kFrames).get(), parentFrames);
  const auto& items = child->getTag(kFrames)->sequenceItems();
  ASSERT_EQ(items.size(), 50u);
  for (unsigned int i = 0; i < items.size(); ++i) {
    if (i == 7) continue;
    EXPECT_EQ(items[i], parentFrames->sequenceItems()[i]) << i;
  }
  EXPECT_EQ(items[7], item);
  EXPECT_EQ(item->parent(), parentFrames->sequenceItems()[7]);
  EXPECT_EQ(child->tagsSize(), 1u);
  EXPECT_EQ(item->tagsSize(), 1u);  // only the change itself

  EXPECT_EQ(textAt(*child, {{kFrames, 7}}), "changed");
  EXPECT_EQ(textAt(*parent, {{kFrames, 7}}), "-");
  EXPECT_EQ(itemAt(*child, {{kFrames, 7}})->getTag(kOuter),
            parent->getTag(kFrames)->sequenceItems()[7]->getTag(kOuter));  // inherited
  auto merged = child->mergedCopy(AllLayers);
  auto read = readBack(*child);
  item->setTag(textElement(kText, LO, "later"));
  for (const auto& copy : {merged, read}) {
    EXPECT_EQ(textAt(*copy, {{kFrames, 7}}), "changed");
    EXPECT_EQ(textAt(*copy, {{kFrames, 8}}), "-");
    EXPECT_EQ(textAt(*copy, {{kFrames, 7}, {kOuter, 0}, {kInner, 0}}), "frame 7");
  }
  EXPECT_FALSE(read->getTag(kFrames)->sequenceItems()[7]->hasParent());  // flat
}

// A path three sequences down layers every level once; later calls reuse the layers that
// earlier ones made, for the same item and for others beside it.
TEST(TreeItemLayersTest, ReachesThreeLevelsDownAndReusesEarlierSteps) {
  auto parent = frames(10);
  const std::string before = streamed(*parent);
  auto child = std::make_shared<Tree>(parent);

  auto leaf = child->layerSequenceItem(kDeep);
  EXPECT_EQ(leaf->parent(), itemAt(*parent, kDeep));
  leaf->setTag(textElement(kText, LO, "moved"));
  const Tag* childFrames = child->getTag(kFrames).get();
  auto frame = child->layerSequenceItem({{kFrames, 3}});
  EXPECT_EQ(frame, childFrames->sequenceItems()[3]);
  EXPECT_EQ(child->layerSequenceItem(kDeep), leaf);
  EXPECT_EQ(frame->layerSequenceItem({{kOuter, 0}, {kInner, 0}}), leaf);
  EXPECT_EQ(leaf->parent(), itemAt(*parent, kDeep));  // not stacked
  EXPECT_EQ(textAt(*child, kDeep), "moved");

  auto other = child->layerSequenceItem({{kFrames, 4}, {kOuter, 0}, {kInner, 0}});
  other->removeTag(kText);
  EXPECT_EQ(child->getTag(kFrames).get(), childFrames);  // the same own element
  EXPECT_EQ(child->tagsSize(), 1u);
  EXPECT_EQ(textAt(*child, kDeep), "moved");
  EXPECT_FALSE(itemAt(*child, {{kFrames, 4}, {kOuter, 0}, {kInner, 0}})->hasTag(kText));
  EXPECT_EQ(childFrames->sequenceItems()[5], parent->getTag(kFrames)->sequenceItems()[5]);
  EXPECT_EQ(textAt(*child->mergedCopy(AllLayers), kDeep), "moved");
  EXPECT_EQ(textAt(*readBack(*child), kDeep), "moved");
  EXPECT_EQ(streamed(*parent), before);
}

// A layer over a changed child layers the child's items, not the parent's, and leaves both
// as they were.
TEST(TreeItemLayersTest, LayersOverAChildReachIntoTheChildsItems) {
  auto parent = frames(5);
  auto child = std::make_shared<Tree>(parent);
  auto leaf = child->layerSequenceItem(kDeep);
  leaf->setTag(textElement(kText, LO, "child"));
  auto grandchild = std::make_shared<Tree>(child);

  auto top = grandchild->layerSequenceItem(kDeep);
  top->setTag(textElement(kText, LO, "grandchild"));
  grandchild->layerSequenceItem({{kFrames, 0}})->removeTag(kOuter);
  EXPECT_EQ(top->parent(), leaf);
  EXPECT_EQ(textAt(*grandchild, kDeep), "grandchild");
  EXPECT_EQ(textAt(*child, kDeep), "child");
  EXPECT_EQ(textAt(*parent, kDeep), "frame 3");
  EXPECT_TRUE(itemAt(*child, {{kFrames, 0}})->hasTag(kOuter));
  EXPECT_EQ(grandchild->getTag(kFrames)->sequenceItems()[1],
            parent->getTag(kFrames)->sequenceItems()[1]);
  EXPECT_EQ(textAt(*readBack(*grandchild), kDeep), "grandchild");
  EXPECT_EQ(child->tagsSize(), 1u);
  EXPECT_EQ(leaf->tagsSize(), 1u);
}

// A bad step anywhere on the path throws before anything changes.
TEST(TreeItemLayersTest, RejectsBadPathsWithoutChangingTheChild) {
  auto parent = frames(3);
  auto withNull = sequence(TagId(0x0040, 0xA730), "ContentSequence");
  withNull->addSequenceItem();
  parent->addTag(withNull);
  parent->addTag(textElement(TagId(0x0010, 0x0010), PN, "Doe^Jane"));
  auto child = std::make_shared<Tree>(parent);
  auto fails = [&](const Tree::ItemPath& path, const std::string& description) {
    expectQuiltraError([&] { child->layerSequenceItem(path); }, "Tree::layerSequenceItem",
                       description);
  };
  fails({}, "empty path");
  fails({{TagId(0x0008, 0x1115), 0}}, "tag does not exist");
  fails({{TagId(0x0010, 0x0010), 0}}, "illegal type");
  fails({{kFrames, 3}}, "index out of range");
  fails({{TagId(0x0040, 0xA730), 0}}, "null sequence item");
  fails({{kFrames, 2}, {kOuter, 1}}, "index out of range");
  fails({{kFrames, 2}, {kOuter, 0}, {kText, 0}}, "tag does not exist");
  EXPECT_EQ(child->tagsSize(), 0u);

  auto frame = child->layerSequenceItem({{kFrames, 1}});
  frame->removeTag(kOuter);
  fails({{kFrames, 1}, {kOuter, 0}}, "tag does not exist");  // deleted in the item layer
  fails({{kFrames, 2}, {kOuter, 0}, {kInner, 9}}, "index out of range");
  EXPECT_EQ(child->getTag(kFrames)->sequenceItems()[2],
            parent->getTag(kFrames)->sequenceItems()[2]);
  child->removeTag(kFrames);
  fails({{kFrames, 0}}, "tag does not exist");  // deleted in the child
  EXPECT_EQ(child->tagsSize(), 1u);             // the placeholder only
}

// Own elements: a child's own sequence (set or added) is its own to change, unless it is the
// parent's very element; a Tree without parent changes its own item.
TEST(TreeItemLayersTest, ChangesOwnSequencesInPlaceButNeverTheParentsElement) {
  auto parent = frames(4);
  const std::string before = streamed(*parent);
  auto root = frames(2);
  EXPECT_EQ(root->layerSequenceItem({{kFrames, 1}}), itemAt(*root, {{kFrames, 1}}));

  auto copied = std::make_shared<Tree>(parent);
  copied->setTag(parent->getTag(kFrames));  // a deep copy: the child's own items
  auto item = copied->layerSequenceItem({{kFrames, 2}});
  EXPECT_FALSE(item->hasParent());
  EXPECT_EQ(item, itemAt(*copied, {{kFrames, 2}}));

  auto shared = std::make_shared<Tree>(parent);
  shared->addTag(parent->getTag_rw(kFrames));  // the parent's own object
  shared->layerSequenceItem({{kFrames, 2}})->setTag(textElement(kText, LO, "changed"));
  EXPECT_NE(shared->getTag(kFrames), parent->getTag(kFrames));
  EXPECT_EQ(textAt(*shared, {{kFrames, 2}}), "changed");
  EXPECT_EQ(streamed(*parent), before);
}

// An item layer is a child layer like any other: selectors, deletion marks, dictionary, and
// the refusal of the text stream form, also in a merged copy, which copies item layers with
// their parents.
TEST(TreeItemLayersTest, ItemLayersFollowTheRulesOfLayers) {
  auto parent = frames(3);
  parent->setDict(std::make_shared<QuiltraTest::TestDict>());
  auto child = std::make_shared<Tree>(parent);
  const Tree::ItemPath path = {{kFrames, 1}, {kOuter, 0}, {kInner, 0}};
  auto item = child->layerSequenceItem(path);
  EXPECT_TRUE(item->hasDict());
  item->removeTag(kNumber);
  EXPECT_FALSE(item->hasTag(kNumber) || item->hasTag(kText, OwnLayer));
  EXPECT_TRUE(item->hasTag(kText, AllLayers) && !item->hasTag(kText, ExceptRoot));
  EXPECT_TRUE(itemAt(*parent, path)->hasTag(kNumber));

  std::ostringstream out;
  expectQuiltraError([&] { item->toStream(out); }, "Tree::toStream",
                     "cannot stream tree with parents");
  auto merged = child->mergedCopy(AllLayers);
  EXPECT_FALSE(merged->hasParent());
  expectQuiltraError([&] { merged->toStream(out); }, "Tree::toStream",
                     "cannot stream tree with parents");
  EXPECT_NO_THROW(readBack(*merged)->toStream(out));
  EXPECT_FALSE(readBack(*child)
                   ->getTag(kFrames)
                   ->sequenceItems()[1]
                   ->getTag(kOuter)
                   ->sequenceItems()[0]
                   ->getTag(kInner)
                   ->sequenceItems()[0]
                   ->hasTag(kNumber));
}

// The child's own sequences share items with the parent; converting or setting the
// dictionary on the child reaches its item layers only, never the shared items.
TEST(TreeItemLayersTest, InPlaceChangesOfTheChildPassOverSharedItems) {
  const std::string latin1 = "J\xE9r\xF4me";
  auto parent = frames(3);
  for (unsigned int i = 0; i < 3; ++i) {
    std::const_pointer_cast<Tree>(itemAt(*parent, {{kFrames, i}}))
        ->addTag(textElement(kText, LO, latin1));
  }
  const std::string before = streamed(*parent);
  auto child = std::make_shared<Tree>(parent);
  child->layerSequenceItem({{kFrames, 1}})->setTag(textElement(kText, LO, latin1));
  child->convertCharacterSet("ISO_IR 100", "ISO_IR 192");
  child->setDict(std::make_shared<QuiltraTest::TestDict>());
  EXPECT_EQ(streamed(*parent), before);
  EXPECT_FALSE(itemAt(*parent, {{kFrames, 0}})->hasDict());
  EXPECT_TRUE(itemAt(*child, {{kFrames, 1}})->hasDict());
  EXPECT_EQ(textAt(*child, {{kFrames, 1}}), "J\xC3\xA9r\xC3\xB4me");
  EXPECT_EQ(textAt(*child, {{kFrames, 0}}), latin1);
}

// The cost per level is a few blocks, the same for 10 items as for 10,000; a call that
// reuses every level takes at most the list of its changes.
TEST(TreeItemLayersTest, AllocatesAFewBlocksPerLevelWhateverTheNumberOfItems) {
  auto count = [](unsigned int items) {
    auto child = std::make_shared<Tree>(frames(items));
    const long start = QuiltraTest::allocationCount.load();
    child->layerSequenceItem(kDeep);
    const long first = QuiltraTest::allocationCount.load() - start;
    child->layerSequenceItem(kDeep);
    EXPECT_LE(QuiltraTest::allocationCount.load() - start - first, 1);
    return first;
  };
  const long small = count(10);
  EXPECT_EQ(count(10000), small);
  EXPECT_LE(small, 5 * 3 + 1);  // element, name, item list, map node, item layer; the list
}

}  // namespace
}  // namespace Quiltra
