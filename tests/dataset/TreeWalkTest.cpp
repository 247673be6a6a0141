#include "support/AllocationWatch.h"

#include <gtest/gtest.h>
#include <initializer_list>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <quiltra/quiltra.h>

using namespace Quiltra;

namespace {

using Visited = std::vector<std::pair<TagId, const Tag*>>;

const TagId kA(0x0008, 0x0016), kB(0x0008, 0x0060), kC(0x0010, 0x0010), kD(0x0010, 0x0020);
const TagId kE(0x0020, 0x000D), kF(0x0028, 0x0010), kG(0x7FE0, 0x0010);

// Every selector, the two invalid values included.
const int kSelectors[] = {AllLayers, ExceptRoot, OwnLayer, -1, 3};

std::shared_ptr<Tag> element(const TagId& id) {
  auto tag = std::make_shared<Tag>(TagInfo(id, "", LO, {1, 1}));
  tag->addValue("v");
  return tag;
}

std::shared_ptr<Tree> layer(std::shared_ptr<const Tree> parent, std::initializer_list<TagId> ids) {
  auto tree = std::make_shared<Tree>(std::move(parent));
  for (const TagId& id : ids) tree->addTag(id, element(id));
  return tree;
}

Visited walked(const Tree& tree, int selector) {
  Visited visited;
  tree.forEachTag(static_cast<TagSelector>(selector),
                  [&](const TagId& id, const Tag& tag) { visited.emplace_back(id, &tag); });
  return visited;
}

// What getTags lists, null entries left out: the stored elements themselves.
Visited listed(const Tree& tree, int selector) {
  Visited visited;
  const auto tags = tree.getTags(static_cast<TagSelector>(selector));
  for (const auto& entry : *tags) {
    if (entry.second) visited.emplace_back(entry.first, entry.second.get());
  }
  return visited;
}

void expectWalkMatchesListing(const Tree& tree) {
  for (int selector : kSelectors) {
    SCOPED_TRACE("selector " + std::to_string(selector));
    EXPECT_EQ(walked(tree, selector), listed(tree, selector));
  }
}

std::vector<TagId> ids(const Visited& visited) {
  std::vector<TagId> result;
  for (const auto& entry : visited) result.push_back(entry.first);
  return result;
}

}  // namespace

TEST(TreeWalkTest, RootWalkMatchesListingUnderEverySelector) {
  const auto root = layer(nullptr, {kE, kA, kG, kC});
  expectWalkMatchesListing(*root);
  EXPECT_EQ(ids(walked(*root, AllLayers)), (std::vector<TagId>{kA, kC, kE, kG}));
  EXPECT_TRUE(walked(*root, ExceptRoot).empty());
  expectWalkMatchesListing(Tree());
}

// root: A B D E; middle: C, overrides B, deletes D and E; top: re-adds E, overrides A,
// adds G. F lives only in the root; a child over top holds nothing of its own.
TEST(TreeWalkTest, LayeredWalkMatchesListingWithOverridesAndDeletions) {
  const auto root = layer(nullptr, {kA, kB, kD, kE, kF});
  const auto middle = layer(root, {kC, kB});
  middle->removeTag(kD);
  middle->removeTag(kE);
  const auto top = layer(middle, {kE, kA, kG});
  const auto empty = std::make_shared<Tree>(top);
  for (const auto& tree : {root, middle, top, empty}) expectWalkMatchesListing(*tree);

  const Visited all = walked(*top, AllLayers);
  EXPECT_EQ(ids(all), (std::vector<TagId>{kA, kB, kC, kE, kF, kG}));
  EXPECT_EQ(all[0].second, top->getTag(kA).get());  // the upper-most entry decides
  EXPECT_EQ(all[1].second, middle->getTag(kB).get());
  EXPECT_EQ(all[3].second, top->getTag(kE).get());  // re-added over a deletion
  EXPECT_EQ(ids(walked(*top, ExceptRoot)), (std::vector<TagId>{kA, kB, kC, kE, kG}));
  EXPECT_EQ(ids(walked(*middle, OwnLayer)), (std::vector<TagId>{kB, kC}));  // no placeholders
  EXPECT_TRUE(walked(*empty, OwnLayer).empty());
  EXPECT_EQ(walked(*empty, AllLayers), all);
}

// A root read from a text stream keeps deletion marks: over placeholders (hidden) and
// without an entry (ignored, as the listings ignore it).
TEST(TreeWalkTest, RootSkipsPlaceholdersMarkedDeleted) {
  std::stringstream text;
  Quiltra_Utils::toStream(text, 2);
  for (const TagId& id : {kA, kC}) {
    Quiltra_Utils::toStream(text, id.rawId());
    element(id)->toStream(text);
  }
  Quiltra_Utils::toStream(text, 2);
  kC.toStream(text);
  kF.toStream(text);
  Tree root;
  root.fromStream(text);
  ASSERT_EQ(root.tagsSize(), 2u);
  expectWalkMatchesListing(root);
  EXPECT_EQ(ids(walked(root, AllLayers)), std::vector<TagId>{kA});

  const auto child = std::make_shared<Tree>(std::make_shared<const Tree>(root));
  expectWalkMatchesListing(*child);
}

// An entry stored as a null pointer is no element to hand out, but still hides what lies
// below it, as in the listing.
TEST(TreeWalkTest, NullEntriesAreSkippedAndHideDeeperEntries) {
  const auto root = layer(nullptr, {kA, kB});
  root->addTag(kC, nullptr);
  const auto child = layer(root, {kC});
  child->addTag(kA, nullptr);
  for (const auto& tree : {root, child}) expectWalkMatchesListing(*tree);
  EXPECT_EQ(ids(walked(*child, AllLayers)), (std::vector<TagId>{kB, kC}));
}

// The walk builds no listing: nothing at all for a root or the own layer, and a fixed few
// allocations for a layered view whatever its size.
TEST(TreeWalkTest, AllocatesNothingPerElement) {
  const auto small = layer(layer(nullptr, {kA}), {kB});
  const auto large = layer(layer(nullptr, {kA, kB, kC, kD}), {kB, kE, kF, kG});
  std::size_t count = 0;
  const Tree::TagVisitor visit = [&count](const TagId&, const Tag&) { ++count; };
  auto allocationsOf = [&](const Tree& tree, TagSelector selector) {
    const long before = QuiltraTest::allocationCount;
    tree.forEachTag(selector, visit);
    return QuiltraTest::allocationCount - before;
  };
  EXPECT_EQ(allocationsOf(*large->parent(), AllLayers), 0);
  EXPECT_EQ(allocationsOf(*large, OwnLayer), 0);
  EXPECT_EQ(allocationsOf(*large, AllLayers), allocationsOf(*small, AllLayers));
  EXPECT_EQ(count, 4u + 4u + 7u + 2u);
}
