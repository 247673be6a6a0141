#include "support/TestDict.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>

#include <quiltra/quiltra.h>

using namespace Quiltra;
using Ids = Tree::TagIdList;

namespace {

const TagId kModality(0x0008, 0x0060), kName(0x0010, 0x0010), kId(0x0010, 0x0020);
const TagId kRows(0x0028, 0x0010), kIds[] = {TagId(0u), kModality, kName, kId, kRows};

// Ids as letters: 0 for (0000,0000), M, N, I, R, and F for (ffff,ffff).
std::string letters(const Ids& ids) {
  std::string text;
  for (const TagId& id : ids) text += "0MNIRF"[std::find(kIds, kIds + 5, id) - kIds];
  return text;
}

std::string listed(const Tree& tree, int selector) {
  return letters(*tree.tagIds(static_cast<TagSelector>(selector)));
}

std::shared_ptr<Tree> layer(std::shared_ptr<const Tree> parent, std::initializer_list<TagId> ids,
                            const std::string& text = "v") {
  auto tree = std::make_shared<Tree>(parent);
  for (const TagId& id : ids) tree->addTag(std::make_shared<Tag>(TagInfo(id, "", LO, {1, 1})));
  for (const TagId& id : ids) tree->getTag_rw(id)->addValue(text);
  return tree;
}

// root: Modality and Id; middle (with a dictionary): Name, removes Id; top: Rows and Modality.
std::array<std::shared_ptr<Tree>, 3> chain() {
  auto root = layer(nullptr, {kModality, kId}, "root"), middle = layer(root, {kName}, "middle");
  middle->removeTag(kId);
  middle->setDict(std::make_shared<QuiltraTest::TestDict>());
  return {root, middle, layer(middle, {kRows, kModality}, "top")};
}

}  // namespace

TEST(TreeCopiesTest, ListingsFollowSelectorsAndDeletionMarks) {
  const auto [root, middle, top] = chain();
  EXPECT_EQ(listed(*top, AllLayers) + " " + listed(*top, ExceptRoot), "MNR MNR");
  EXPECT_EQ(listed(*middle, ExceptRoot) + " " + listed(*middle, OwnLayer), "N N");
  EXPECT_EQ(listed(*root, ExceptRoot) + listed(*top, -1) + listed(*top, 3), "");
  EXPECT_EQ(top->getTags(AllLayers)->at(kModality), top->getTag_rw(kModality));  // shared, top's
}

TEST(TreeCopiesTest, RangesAreInclusiveUnderEverySelector) {
  auto root = layer(nullptr, {TagId(0u), kModality, kRows});
  auto child = layer(root, {kName, kId, TagId(~0u)});
  EXPECT_EQ(letters(*child->tagIds(kName, kId, OwnLayer)), "NI");
  EXPECT_EQ(letters(*child->tagIds(kModality, kRows, AllLayers)), "MNIR");
  EXPECT_EQ(letters(*child->tagIds(kModality, kRows, ExceptRoot)), "NI");
  EXPECT_EQ(letters(*child->tagIds(kRows, kModality, AllLayers)), "");
  EXPECT_EQ(child->getTags(kName, kId, OwnLayer)->size(), 2u);
  EXPECT_EQ(listed(*child, AllLayers), "0MNIRF");  // the whole range reaches both ends
  EXPECT_EQ(child->getTags(ExceptRoot)->size(), 3u);
  EXPECT_EQ(letters(*child->copy(kModality, kName)->tagIds(OwnLayer)), "MN");
}

// mergedCopy and both copy forms give new flat Trees of deep copies, down to sequence items.
TEST(TreeCopiesTest, CopiesAreDeepAndFlat) {
  const auto [root, middle, top] = chain();
  auto item = layer(nullptr, {kName}, "item");
  middle->addTag(std::make_shared<Tag>(TagInfo(kRows, "", SQ, {1, 1})));
  middle->getTag_rw(kRows)->addSequenceItem(item);
  auto ids = std::make_shared<Ids>(Ids{kRows, kName, kRows, kId, kModality, TagId(7, 1)});
  for (const auto& copied :
       {middle->mergedCopy(AllLayers), middle->copy(ids), middle->copy(kName, kRows)}) {
    EXPECT_FALSE(copied->hasParent() || copied->hasDict());
    EXPECT_EQ(copied->tags().count(kId), 0u);  // no placeholder
    auto copiedItem = copied->getTag_rw(kRows)->sequenceItems().at(0);
    copiedItem->getTag_rw(kName)->setValue(std::string("x"), 0);
  }
  EXPECT_EQ(item->getTag(kName)->toString(), "item");
  EXPECT_EQ(listed(*middle->mergedCopy(ExceptRoot), OwnLayer), "NR");
  EXPECT_EQ(letters(*middle->copy(ids)->tagIds(OwnLayer)), "MNR");  // missing, twice, unordered
}

// Both pour only the source's own layer, leaving its placeholders behind.
TEST(TreeCopiesTest, AddTagsSharesAndSetTagsCopiesOwnLayer) {
  const auto [root, middle, top] = chain();
  auto shared = layer(nullptr, {kId}), copied = layer(nullptr, {});
  shared->addTags(middle);
  copied->setTags(middle);
  EXPECT_EQ(listed(*shared, OwnLayer) + " " + listed(*copied, OwnLayer), "NI N");
  EXPECT_EQ(shared->getTag(kId)->toString(), "v");  // not replaced by the source's placeholder
  middle->getTag_rw(kName)->setValue(std::string("x"), 0);
  EXPECT_EQ(shared->getTag(kName)->toString() + copied->getTag(kName)->toString(), "xmiddle");
}
