#include "support/TestDict.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include <quiltra/core/TagId.h>
#include <quiltra/core/TagInfo.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>

using namespace Quiltra;

namespace {

const TagId kModality(0x0008, 0x0060);
const TagId kPatientName(0x0010, 0x0010);
const TagId kPatientId(0x0010, 0x0020);
const TagId kContentSequence(0x0040, 0xA730);

std::shared_ptr<Tag> makeTag(const TagId& id, const std::string& text,
                             const std::string& name = "") {
  auto tag = std::make_shared<Tag>(TagInfo(id, name, LO, {1, 1}));
  tag->addValue(text);
  return tag;
}

std::shared_ptr<Tree> treeWith(const TagId& id, const std::string& text,
                               std::shared_ptr<const Tree> parent = nullptr) {
  auto tree = parent ? std::make_shared<Tree>(parent) : std::make_shared<Tree>();
  tree->addTag(makeTag(id, text));
  return tree;
}

// The first value of what the view holds, or "-" when it holds nothing.
std::string seen(const Tree& tree, const TagId& id, TagSelector selector = AllLayers) {
  auto tag = tree.getTag(id, selector);
  return tag ? tag->toString(0) : "-";
}

std::shared_ptr<Tag> sequenceOf(std::shared_ptr<Tree> item) {
  auto sequence = std::make_shared<Tag>(TagInfo(kContentSequence, "", SQ, {1, 1}));
  sequence->addSequenceItem(item);
  return sequence;
}

}  // namespace

// Layer semantics.

TEST(TreeTest, ChildSeesParentElementsOnlyThroughLayeredViews) {
  auto parent = treeWith(kPatientName, "Doe");
  Tree child(parent);
  EXPECT_TRUE(child.hasTag(kPatientName, AllLayers));
  EXPECT_FALSE(child.hasTag(kPatientName, OwnLayer));
  EXPECT_EQ(child.getTag(kPatientName).get(), parent->getTag(kPatientName).get());  // no copy
  EXPECT_EQ(child.getTag_rw(kPatientName), nullptr);

  child.setTag(makeTag(kPatientName, "Roe"));
  EXPECT_EQ(seen(child, kPatientName), "Roe");
  EXPECT_EQ(seen(child, kPatientName, OwnLayer), "Roe");
  EXPECT_EQ(seen(*parent, kPatientName), "Doe");
}

TEST(TreeTest, RemoveTagLeavesPlaceholderWithParentInfo) {
  auto parent = std::make_shared<Tree>();
  parent->addTag(makeTag(kPatientName, "Doe", "PatientName"));
  Tree child(parent);
  child.removeTag(kPatientName);

  EXPECT_FALSE(child.hasTag(kPatientName, AllLayers));
  EXPECT_FALSE(child.hasTag(kPatientName, OwnLayer));
  EXPECT_EQ(child.getTag_rw(kPatientName), nullptr);
  EXPECT_EQ(seen(*parent, kPatientName), "Doe");
  ASSERT_EQ(child.tagsSize(), 1u);
  const Tag* placeholder = child.tags().at(kPatientName).get();
  EXPECT_EQ(placeholder->info().name(), "PatientName");
  EXPECT_EQ(placeholder->numberOfValues(), 0u);

  child.removeTag(kPatientName);  // already marked: nothing changes
  EXPECT_EQ(child.tagsSize(), 1u);
  EXPECT_EQ(child.tags().at(kPatientName).get(), placeholder);

  child.setTag(makeTag(kPatientName, "Roe"));
  EXPECT_EQ(seen(child, kPatientName, OwnLayer), "Roe");
  EXPECT_EQ(child.tagsSize(), 1u);
}

TEST(TreeTest, RemoveTagOfOverriddenIdHidesItLikeInherited) {
  auto parent = std::make_shared<Tree>();
  parent->addTag(makeTag(kPatientName, "Doe", "FromParent"));
  Tree child(parent);
  child.addTag(makeTag(kPatientName, "Roe", "FromChild"));
  child.removeTag(kPatientName);
  EXPECT_FALSE(child.hasTag(kPatientName, AllLayers));
  EXPECT_FALSE(child.hasTag(kPatientName, ExceptRoot));
  EXPECT_EQ(child.tags().at(kPatientName)->info().name(), "FromParent");
  EXPECT_TRUE(child.tags().at(kPatientName)->isEmpty());
}

TEST(TreeTest, RemoveTagWithoutInheritedElementErasesOwnEntry) {
  auto root = treeWith(kPatientName, "Doe");
  root->removeTag(kPatientName);
  root->removeTag(kPatientId);  // nobody holds it
  EXPECT_EQ(root->tagsSize(), 0u);

  Tree child(root);
  child.addTag(makeTag(kModality, "CT"));
  auto ids = std::make_shared<Tree::TagIdList>(Tree::TagIdList{kModality, kPatientId});
  child.removeTags(ids);
  EXPECT_EQ(child.tagsSize(), 0u);
  EXPECT_EQ(seen(child, kModality), "-");
}

TEST(TreeTest, ThreeLayersShowExceptRootViewsWithoutRoot) {
  auto root = treeWith(kModality, "CT");
  auto middle = treeWith(kPatientName, "Doe", root);
  auto top = treeWith(kPatientId, "42", middle);

  EXPECT_FALSE(top->hasTag(kModality, ExceptRoot));
  EXPECT_TRUE(top->hasTag(kPatientName, ExceptRoot));
  EXPECT_TRUE(top->hasTag(kPatientId, ExceptRoot));
  EXPECT_TRUE(top->hasTag(kModality, AllLayers));
  EXPECT_FALSE(top->hasTag(kPatientName, OwnLayer));
  EXPECT_TRUE(middle->hasTag(kPatientName, ExceptRoot));
  EXPECT_FALSE(root->hasTag(kModality, ExceptRoot));  // even its own element
  EXPECT_TRUE(root->hasTag(kModality, OwnLayer));
}

TEST(TreeTest, DeletionMarkInMiddleLayerHidesRootElementFromTop) {
  auto root = treeWith(kModality, "CT");
  auto middle = std::make_shared<Tree>(root);
  middle->removeTag(kModality);
  Tree top(middle);
  EXPECT_FALSE(top.hasTag(kModality, AllLayers));
  EXPECT_TRUE(root->hasTag(kModality, AllLayers));

  top.setTag(makeTag(kModality, "MR"));
  EXPECT_EQ(seen(top, kModality), "MR");
  EXPECT_FALSE(middle->hasTag(kModality));
}

TEST(TreeTest, InvalidSelectorsFindNothing) {
  auto parent = treeWith(kModality, "CT");
  auto child = treeWith(kPatientName, "Doe", parent);
  for (int raw : {-1, 3, 7}) {
    const auto selector = static_cast<TagSelector>(raw);
    EXPECT_FALSE(child->hasTag(kPatientName, selector)) << raw;
    EXPECT_FALSE(child->hasTag(kModality, selector)) << raw;
    EXPECT_EQ(child->getTag(kPatientName, selector), nullptr) << raw;
  }
}

// Lookups by name.

TEST(TreeTest, LooksUpNamesThroughOwnDictionaryOnly) {
  auto parent = treeWith(kPatientName, "Doe");
  EXPECT_FALSE(parent->hasTag("PatientName"));  // no dictionary
  EXPECT_EQ(parent->getTag("PatientName"), nullptr);

  auto early = std::make_shared<Tree>(parent);
  parent->setDict(std::make_shared<QuiltraTest::TestDict>());
  Tree late(parent);
  EXPECT_FALSE(early->hasDict());  // took the parent's dictionary when it had none
  EXPECT_FALSE(early->hasTag("PatientName"));
  EXPECT_EQ(late.getDict(), parent->getDict());
  EXPECT_TRUE(late.hasTag("PatientName"));
  EXPECT_EQ(late.getTag("PatientName").get(), parent->getTag(kPatientName).get());
  EXPECT_EQ(late.getTag("PatientName", OwnLayer), nullptr);
  EXPECT_FALSE(late.hasTag("PatientID"));  // known name, absent element

  // The test dictionary throws for unknown names; the lookups swallow it.
  EXPECT_FALSE(late.hasTag("NoSuchAttribute"));
  EXPECT_EQ(late.getTag("NoSuchAttribute"), nullptr);
}

// Changes and copies.

TEST(TreeTest, SetTagStoresCopyAddTagSharesObject) {
  Tree tree;
  auto copied = makeTag(kPatientName, "Doe");
  auto shared = makeTag(kModality, "CT");
  tree.setTag(copied);
  tree.addTag(shared);
  copied->addValue(std::string("Roe"));
  shared->addValue(std::string("MR"));
  EXPECT_EQ(tree.getTag(kPatientName)->numberOfValues(), 1u);
  EXPECT_EQ(tree.getTag_rw(kModality), shared);
  EXPECT_EQ(tree.getTag(kModality)->numberOfValues(), 2u);

  // The two-argument forms key by the id given, not by the element's own id.
  tree.setTag(kPatientId, copied);
  tree.addTag(TagId(0x0020, 0x0013), shared);
  EXPECT_EQ(seen(tree, kPatientId), "Doe");
  EXPECT_EQ(seen(tree, TagId(0x0020, 0x0013)), "CT");
  EXPECT_EQ(tree.tagsSize(), 4u);
}

TEST(TreeTest, SetDictReachesNestedItemsButNotParent) {
  auto parent = std::make_shared<Tree>();
  auto inner = treeWith(kPatientName, "Doe");
  auto outer = std::make_shared<Tree>();
  outer->addTag(sequenceOf(inner));
  Tree tree(parent);
  auto sequence = sequenceOf(outer);
  sequence->addSequenceItem();  // a null slot is skipped
  tree.addTag(sequence);

  auto dict = std::make_shared<QuiltraTest::TestDict>();
  tree.setDict(dict);
  EXPECT_EQ(tree.getDict(), dict);
  EXPECT_EQ(outer->getDict(), dict);
  EXPECT_EQ(inner->getDict(), dict);
  EXPECT_TRUE(inner->hasTag("PatientName"));
  EXPECT_FALSE(parent->hasDict());
  EXPECT_EQ(tree.getTag(kContentSequence)->info().vr(), SQ);
}

TEST(TreeTest, AssignmentCopiesOwnLayerOverSameParent) {
  auto parent = std::make_shared<Tree>();
  parent->addTag(makeTag(kModality, "CT"));
  parent->addTag(makeTag(kPatientId, "42"));
  parent->setDict(std::make_shared<QuiltraTest::TestDict>());
  Tree source(parent);
  source.addTag(makeTag(kPatientName, "Doe"));
  source.removeTag(kPatientId);

  Tree target;
  target.addTag(makeTag(TagId(0x0028, 0x0010), "old"));
  target = source;
  EXPECT_EQ(target.parent(), parent);
  EXPECT_EQ(target.getDict(), parent->getDict());
  EXPECT_EQ(seen(target, kModality), "CT");
  EXPECT_FALSE(target.hasTag(kPatientId));  // marks taken over
  EXPECT_FALSE(target.hasTag(TagId(0x0028, 0x0010)));
  EXPECT_EQ(target.tagsSize(), 2u);  // placeholder included
  EXPECT_NE(target.getTag_rw(kPatientName), source.getTag_rw(kPatientName));
  target.getTag_rw(kPatientName)->addValue(std::string("Roe"));
  EXPECT_EQ(source.getTag(kPatientName)->numberOfValues(), 1u);

  const Tree& same = target;
  target = same;  // self-assignment keeps everything
  EXPECT_EQ(target.tagsSize(), 2u);
  auto copied = source.copy();
  EXPECT_EQ(copied->parent(), parent);
  EXPECT_FALSE(copied->hasTag(kPatientId));
  EXPECT_NE(copied->getTag_rw(kPatientName), source.getTag_rw(kPatientName));
}

TEST(TreeTest, RootSharesOwnershipWithExistingOwners) {
  auto root = std::make_shared<Tree>();
  auto middle = std::make_shared<Tree>(root);
  Tree top(middle);
  EXPECT_EQ(top.root(), root);
  EXPECT_EQ(middle->root(), root);

  const long owners = root.use_count();
  auto self = root->root();
  EXPECT_EQ(self, root);
  EXPECT_EQ(root.use_count(), owners + 1);  // a further owner, not an independent one

  Tree standalone;
  EXPECT_EQ(standalone.root(), nullptr);
  Tree copyOfOwned(*root);  // a copy is a new object without owners
  EXPECT_EQ(copyOfOwned.root(), nullptr);
}
