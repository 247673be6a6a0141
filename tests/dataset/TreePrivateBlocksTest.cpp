#include "support/QuiltraTestSupport.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include <quiltra/core/TagId.h>
#include <quiltra/core/TagInfo.h>
#include <quiltra/core/Vr.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>

using Quiltra::AllLayers;
using Quiltra::OwnLayer;
using Quiltra::Tag;
using Quiltra::TagId;
using Quiltra::TagInfo;
using Quiltra::Tree;

namespace {

constexpr unsigned short kGroup = 0x0029;

std::shared_ptr<Tag> textTag(TagId id, const std::string& text) {
  auto tag = std::make_shared<Tag>(TagInfo(id, "Test", Quiltra::LO, {1, 1}));
  tag->addValue(text);
  return tag;
}

void put(Tree& tree, unsigned short element, const std::string& text = "v",
         unsigned short group = kGroup) {
  tree.addTag(textTag(TagId(group, element), text));
}

std::vector<TagId> idsOf(const Tree& tree) {
  return *tree.tagIds(AllLayers);
}

}  // namespace

TEST(TreePrivateBlocksTest, AllocatesCreatorElementOnceInEmptyTree) {
  Tree tree;
  EXPECT_EQ(tree.getPrivateSlot(kGroup, "X"), 0x0010);
  ASSERT_EQ(tree.tagsSize(), 1u);
  const auto creator = tree.getTag(TagId(kGroup, 0x0010), OwnLayer);
  ASSERT_TRUE(creator);
  EXPECT_EQ(creator->info().id(), TagId(kGroup, 0x0010));
  EXPECT_EQ(creator->info().name(), "PrivateCreator");
  EXPECT_EQ(creator->info().vr(), Quiltra::LO);
  EXPECT_EQ(creator->info().multiplicity(), std::make_pair(1u, 1u));
  EXPECT_EQ(creator->numberOfValues(), 1u);
  EXPECT_EQ(creator->toString(), "X");

  EXPECT_EQ(tree.getPrivateSlot(kGroup, "X"), 0x0010);
  EXPECT_EQ(tree.tagsSize(), 1u);
  // A text with a backslash becomes two values; it is still found as the joined text.
  EXPECT_EQ(tree.getPrivateSlot(kGroup, "A\\B"), 0x0011);
  EXPECT_EQ(tree.getPrivateSlot(kGroup, "A\\B"), 0x0011);
  EXPECT_EQ(tree.tagsSize(), 2u);
}

TEST(TreePrivateBlocksTest, FindsCreatorOrLowestFreeSlot) {
  Tree tree;
  put(tree, 0x0010, "A");
  put(tree, 0x0012, "B");
  EXPECT_EQ(tree.findPrivateSlot(kGroup, "B", false), 0x0012);
  EXPECT_EQ(tree.findPrivateSlot(kGroup, "b", false), 0);
  EXPECT_EQ(tree.findPrivateSlot(kGroup, "C", false), 0);
  EXPECT_EQ(tree.findPrivateSlot(kGroup, "C", true), 0x0011);
  EXPECT_EQ(tree.getPrivateSlot(kGroup, "C"), 0x0011);
  EXPECT_EQ(tree.findPrivateSlot(kGroup, "D", true), 0x0013);
  EXPECT_EQ(tree.findPrivateSlot(0x0031, "A", false), 0);
  EXPECT_EQ(tree.findPrivateSlot(0x0031, "A", true), 0x0010);
}

TEST(TreePrivateBlocksTest, LooksOnlyAtCreatorRangeOfTheGroup) {
  Tree tree;
  put(tree, 0x000F, "Z");
  put(tree, 0x0100, "Z");
  put(tree, 0x1010, "Z");
  put(tree, 0x0010, "Z", 0x0027);
  EXPECT_EQ(tree.findPrivateSlot(kGroup, "Z", false), 0);
  EXPECT_EQ(tree.getPrivateSlot(kGroup, "Z"), 0x0010);
  // The group is not tested for being odd.
  put(tree, 0x0010, "E", 0x0028);
  EXPECT_EQ(tree.findPrivateSlot(0x0028, "E", false), 0x0010);
}

TEST(TreePrivateBlocksTest, ReportsFullGroupAsZeroWithoutChange) {
  Tree tree;
  for (unsigned short slot = 0x0010; slot <= 0x00FF; ++slot) {
    put(tree, slot, "C" + std::to_string(slot));
  }
  EXPECT_EQ(tree.getPrivateSlot(kGroup, "new"), 0);
  EXPECT_EQ(tree.tagsSize(), 240u);
  EXPECT_EQ(tree.findPrivateSlot(kGroup, "new", true), 0);
  EXPECT_EQ(tree.findPrivateSlot(kGroup, "C255", false), 0x00FF);

  tree.removeTag(TagId(kGroup, 0x00FF));
  EXPECT_EQ(tree.getPrivateSlot(kGroup, "new"), 0x00FF);
}

TEST(TreePrivateBlocksTest, PrefersLowerSlotForDuplicateCreatorText) {
  Tree tree;
  put(tree, 0x0030, "D");
  put(tree, 0x0020, "D");
  EXPECT_EQ(tree.findPrivateSlot(kGroup, "D", false), 0x0020);
  EXPECT_EQ(tree.getPrivateSlot(kGroup, "D"), 0x0020);
  EXPECT_EQ(tree.tagsSize(), 2u);
}

TEST(TreePrivateBlocksTest, SkipsCreatorWhoseTextCannotBeRead) {
  Tree tree;
  auto binary = std::make_shared<Tag>(TagInfo(TagId(kGroup, 0x0010), "Raw", Quiltra::OB, {1, 1}));
  const unsigned char byte = 0x58;
  binary->addValue().setData(1, &byte);
  tree.addTag(binary);
  put(tree, 0x0012, "X");

  EXPECT_EQ(tree.findPrivateSlot(kGroup, "X", false), 0x0012);
  EXPECT_EQ(tree.getPrivateSlot(kGroup, "Y"), 0x0011);
  // getPrivateCreator lets the failure through.
  QuiltraTest::expectQuiltraError([&] { tree.getPrivateCreator(TagId(kGroup, 0x1001)); },
                                  "Tag::toString",
                                  "VR of UN,OB,OW,SQ are not supported for strings");
}

TEST(TreePrivateBlocksTest, NamesCreatorOfBlock) {
  Tree tree;
  put(tree, 0x0010, "A");
  put(tree, 0x0011, "B");
  put(tree, 0x0014, "P\\Q");
  put(tree, 0x00FF, "Z");
  put(tree, 0x0010, "E", 0x0028);
  tree.addTag(std::make_shared<Tag>(TagInfo(TagId(kGroup, 0x0013), "Empty", Quiltra::LO, {1, 1})));

  EXPECT_EQ(tree.getPrivateCreator(TagId(kGroup, 0x1000)), "A");
  EXPECT_EQ(tree.getPrivateCreator(TagId(kGroup, 0x10FF)), "A");
  EXPECT_EQ(tree.getPrivateCreator(TagId(kGroup, 0x1100)), "B");
  EXPECT_EQ(tree.getPrivateCreator(TagId(kGroup, 0x1400)), "P\\Q");
  EXPECT_EQ(tree.getPrivateCreator(TagId(kGroup, 0xFFFF)), "Z");
  EXPECT_EQ(tree.getPrivateCreator(TagId(kGroup, 0x0010)), "A");
  EXPECT_EQ(tree.getPrivateCreator(TagId(kGroup, 0x00FF)), "Z");

  EXPECT_EQ(tree.getPrivateCreator(TagId(kGroup, 0x0110)), "");
  EXPECT_EQ(tree.getPrivateCreator(TagId(kGroup, 0x0FFF)), "");
  EXPECT_EQ(tree.getPrivateCreator(TagId(kGroup, 0x000F)), "");
  EXPECT_EQ(tree.getPrivateCreator(TagId(0x0028, 0x1001)), "");
  EXPECT_EQ(tree.getPrivateCreator(TagId(0x0028, 0x0010)), "");
  EXPECT_EQ(tree.getPrivateCreator(TagId(kGroup, 0x1201)), "");
  EXPECT_EQ(tree.getPrivateCreator(TagId(kGroup, 0x1300)), "");
}

TEST(TreePrivateBlocksTest, RemovesCreatorAndItsBlockOnly) {
  Tree tree;
  for (unsigned short element :
       {0x000F, 0x0010, 0x0011, 0x0100, 0x0F00, 0x0FFF, 0x1000, 0x1080, 0x10FF, 0x1100, 0x11FF}) {
    put(tree, element);
  }
  put(tree, 0x1000, "v", 0x0031);

  tree.removePrivateTags(kGroup, 0x000F);
  tree.removePrivateTags(kGroup, 0x0100);
  EXPECT_EQ(tree.tagsSize(), 12u);

  tree.removePrivateTags(kGroup, 0x0010);
  const std::vector<TagId> expected{
      TagId(kGroup, 0x000F), TagId(kGroup, 0x0011), TagId(kGroup, 0x0100), TagId(kGroup, 0x0F00),
      TagId(kGroup, 0x0FFF), TagId(kGroup, 0x1100), TagId(kGroup, 0x11FF), TagId(0x0031, 0x1000)};
  EXPECT_EQ(idsOf(tree), expected);
  // A root Tree erases: no placeholders remain.
  EXPECT_EQ(tree.tagsSize(), 8u);
}

TEST(TreePrivateBlocksTest, WorksThroughParentLayerAndChangesOnlyTheChild) {
  auto parent = std::make_shared<Tree>();
  put(*parent, 0x0010, "A");
  put(*parent, 0x1001);
  put(*parent, 0x10FF);
  put(*parent, 0x1101);
  Tree child(parent);

  EXPECT_EQ(child.findPrivateSlot(kGroup, "A", false), 0x0010);
  EXPECT_EQ(child.getPrivateSlot(kGroup, "A"), 0x0010);
  EXPECT_EQ(child.tagsSize(), 0u);
  EXPECT_EQ(child.getPrivateCreator(TagId(kGroup, 0x1001)), "A");
  EXPECT_EQ(child.getPrivateSlot(kGroup, "B"), 0x0011);
  EXPECT_FALSE(parent->hasTag(TagId(kGroup, 0x0011)));

  child.removePrivateTags(kGroup, 0x0010);
  EXPECT_FALSE(child.hasTag(TagId(kGroup, 0x0010)));
  EXPECT_FALSE(child.hasTag(TagId(kGroup, 0x1001)));
  EXPECT_FALSE(child.hasTag(TagId(kGroup, 0x10FF)));
  EXPECT_TRUE(child.hasTag(TagId(kGroup, 0x1101)));
  EXPECT_EQ(child.getPrivateCreator(TagId(kGroup, 0x1001)), "");
  EXPECT_EQ(idsOf(*parent).size(), 4u);
  EXPECT_EQ(parent->getPrivateCreator(TagId(kGroup, 0x1001)), "A");

  // The hidden slot is free again in the child; taking it replaces the placeholder.
  EXPECT_EQ(child.findPrivateSlot(kGroup, "A", false), 0);
  EXPECT_EQ(child.getPrivateSlot(kGroup, "C"), 0x0010);
  EXPECT_EQ(child.getPrivateCreator(TagId(kGroup, 0x1001)), "C");
  EXPECT_EQ(parent->getPrivateCreator(TagId(kGroup, 0x1001)), "A");
}
