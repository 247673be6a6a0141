#include "multiframe/GridFixtures.h"
#include "support/TestDict.h"

#include <gtest/gtest.h>

#include <quiltra/quiltra.h>

using namespace Quiltra;
using namespace GridFixtures;

namespace {

// A 2 x 2 grid (slot 0x11, behind another creator) whose position [1, 0] holds its own
// slice thickness and frame index, under a top level with another slice thickness and a
// modality.
struct ExampleGrid {
  std::shared_ptr<Tree> tree = std::make_shared<Tree>();
  StructuredMF grid{std::shared_ptr<Tree>()};

  ExampleGrid() {
    tree->addTag(text(creatorId(0x10), "another creator"));
    tree->addTag(text(blockId(0x10, 0x05), "theirs"));
    tree->addTag(text(creatorId(0x11), StructuredMF::privateCreator));
    grid = StructuredMF(tree, Position{2, 2});
    tree->setDict(std::make_shared<QuiltraTest::TestDict>());
    grid.setTagForGridPosition(text(kSliceThickness, "1.5", DS), {1, 0});
    grid.setFrameIndexForGridPosition(4, {1, 0});
    tree->addTag(text(kSliceThickness, "3", DS));
    tree->addTag(text(kModality, "MR"));
  }
};

}  // namespace

TEST(StructuredMFExtractionTest, TheThreeModesCombinePositionAndSharedTagsDifferently) {
  ExampleGrid example;
  const StructuredMF& grid = example.grid;
  const auto merged = grid.extractTagTreeForGridPosition({1, 0}, StructuredMF::MergedWithShared);
  EXPECT_EQ(idsOf(*merged), "(0008,0060) (0018,0050) (0041,0010) (0041,1005)");
  EXPECT_EQ(show(merged->getTag(kSliceThickness)), "1.5");
  EXPECT_FALSE(merged->hasParent());
  EXPECT_EQ(merged->getDict(), example.tree->getDict());

  const auto alone = grid.extractTagTreeForGridPosition(1, 0, 0, StructuredMF::PositionOnly);
  EXPECT_EQ(idsOf(*alone), "(0018,0050)");
  EXPECT_EQ(alone->getDict(), example.tree->getDict());
  const auto other = grid.extractTagTreeForGridPosition(
      {1, 0}, static_cast<StructuredMF::ExtractMode>(7));  // any other code: position only
  EXPECT_EQ(idsOf(*other), "(0018,0050)");

  const auto layered = grid.extractTagTreeForGridPosition({1, 0}, StructuredMF::SharedAsParent);
  EXPECT_EQ(layered->parent(), example.tree);
  EXPECT_EQ(show(layered->getTag(kSliceThickness, OwnLayer)), "1.5");
  EXPECT_EQ(show(layered->getTag(kModality)), "MR");
  EXPECT_EQ(idsOf(*layered), "(0008,0060) (0018,0050) (0041,0010) (0041,1005)");
  EXPECT_EQ(layered->getDict(), example.tree->getDict());
  const auto placeholders = layered->tagsSize() - layered->tagIds(OwnLayer)->size();
  EXPECT_EQ(placeholders, 3u);  // the creator, the extent and the nesting
  example.tree->getTag_rw(kModality)->setValue(std::string("CT"), 0);
  EXPECT_EQ(show(layered->getTag(kModality)), "CT");  // the parent is seen live
}

TEST(StructuredMFExtractionTest, ExtractionsAreCopiesWithoutTheViewsOwnElements) {
  ExampleGrid example;
  const auto before = example.tree->copy();
  for (int mode : {0, 1, 2}) {
    const auto extracted = example.grid.extractTagTreeForGridPosition(
        {1, 0}, static_cast<StructuredMF::ExtractMode>(mode));
    for (unsigned short offset : {0x01, 0x02, 0x03}) {
      EXPECT_FALSE(extracted->hasTag(blockId(0x11, offset))) << mode;
    }
    EXPECT_FALSE(extracted->hasTag(creatorId(0x11))) << mode;
    extracted->getTag_rw(kSliceThickness)->setValue(std::string("9"), 0);
  }
  const auto merged =
      example.grid.extractTagTreeForGridPosition({1, 0}, StructuredMF::MergedWithShared);
  merged->getTag_rw(kModality)->setValue(std::string("XA"), 0);
  EXPECT_EQ(show(example.grid.tagForGridPosition(kSliceThickness, {1, 0})), "1.5");
  EXPECT_EQ(show(example.tree->getTag(kModality)), "MR");
  EXPECT_EQ(idsOf(*example.tree), idsOf(*before));
  EXPECT_EQ(*example.tree->getTag(blockId(0x11, 0x02)), *before->getTag(blockId(0x11, 0x02)));
}

TEST(StructuredMFExtractionTest, TheInnermostOccurrenceWinsAtEveryDepth) {
  auto tree = std::make_shared<Tree>();
  StructuredMF grid(tree, Position{2, 2, 2, 2});
  grid.setTagForGridPosition(text(kModality, "position"), {1, 0, 0, 0});
  const auto outer = item(*tree, blockId(0x10, 0x02), 0);
  const auto dim2 = std::const_pointer_cast<Tree>(item(*outer, blockId(0x10, 0x02), 0));
  dim2->addTag(text(kModality, "dimension 2"));
  dim2->addTag(text(kSopClass, "from dimension 2"));
  std::const_pointer_cast<Tree>(outer)->addTag(text(kImagePosition, "from dimension 3"));
  tree->addTag(text(kSopClass, "top"));
  const auto at = [&](const Position& position) {
    return grid.extractTagTreeForGridPosition(position, StructuredMF::MergedWithShared);
  };
  const auto there = at({1, 0, 0, 0});
  EXPECT_EQ(idsOf(*there), "(0008,0016) (0008,0060) (0020,0032)");
  EXPECT_EQ(show(there->getTag(kModality)) + "|" + show(there->getTag(kSopClass)),
            "position|from dimension 2");
  EXPECT_EQ(show(at({0, 0, 0, 0})->getTag(kModality)), "dimension 2");
  EXPECT_EQ(show(at({0, 0, 1, 0})->getTag(kSopClass)), "top");
  EXPECT_EQ(show(at({0, 0})->getTag(kModality)), "dimension 2");  // padded with zeros
  EXPECT_EQ(idsOf(*at({0, 0, 0, 1})), "(0008,0016)");
  EXPECT_EQ(show(grid.extractTagTreeForGridPosition(1, 0, 0, StructuredMF::PositionOnly)
                     ->getTag(kModality)),
            "position");
}

TEST(StructuredMFExtractionTest, MissingDataGivesEmptyExtractions) {
  StructuredMF nothing(std::shared_ptr<const Tree>{});
  for (int mode : {0, 1, 2}) {
    const auto extracted =
        nothing.extractTagTreeForGridPosition({0}, static_cast<StructuredMF::ExtractMode>(mode));
    EXPECT_EQ(extracted->tagsSize(), 0u);
    EXPECT_FALSE(extracted->hasParent() || extracted->hasDict());
  }
  // No nesting yet: the walk finds no item, so only the shared tags can appear.
  auto tree = std::make_shared<Tree>();
  StructuredMF grid(tree, Position{2});
  tree->addTag(text(kModality, "MR"));
  EXPECT_EQ(grid.extractTagTreeForGridPosition({1}, StructuredMF::PositionOnly)->tagsSize(), 0u);
  EXPECT_EQ(idsOf(*grid.extractTagTreeForGridPosition({1}, StructuredMF::MergedWithShared)),
            "(0008,0060)");
}

TEST(StructuredMFExtractionTest, TheSharedTagTreeHoldsCopiesOfTheTopLevelOnly) {
  ExampleGrid example;
  example.tree->addTag(text(kSopClass, "1.2.840"));
  const auto shared = example.grid.extractSharedTagTree();
  EXPECT_EQ(idsOf(*shared), "(0008,0016) (0008,0060) (0018,0050) (0041,0010) (0041,1005)");
  EXPECT_EQ(show(shared->getTag(kSliceThickness)), "3");
  EXPECT_EQ(shared->getDict(), example.tree->getDict());
  EXPECT_NE(shared->getTag(kSopClass), example.tree->getTag(kSopClass));

  auto parent = std::make_shared<Tree>();
  parent->addTag(text(kModality, "parent"));
  auto child = std::make_shared<Tree>(parent);
  StructuredMF layered(child, Position{2});
  EXPECT_EQ(idsOf(*layered.extractSharedTagTree()), "(0008,0060)");
}

TEST(StructuredMFExtractionTest, EmptyFramesAreListedInOdometerOrder) {
  auto tree = std::make_shared<Tree>();
  StructuredMF grid(tree, Position{3, 2});
  std::vector<Position> empty{{9, 9}};
  grid.getEmptyFrames(empty);  // no nesting yet: every position is empty
  EXPECT_EQ(empty.size(), 6u);
  grid.setTagForGridPosition(text(kModality, "CT"), {0, 0});
  grid.setFrameIndexForGridPosition(2, {2, 1});
  grid.setTagForGridPosition(std::make_shared<Tag>(TagInfo(kSopClass, "", UI, {1, 1})), {1, 1});
  grid.getEmptyFrames(empty);
  EXPECT_EQ(empty, (std::vector<Position>{{1, 0}, {2, 0}, {0, 1}, {1, 1}}));
  EXPECT_TRUE(grid.frameExists({1, 1}));  // a placeholder makes the item exist, not hold data

  StructuredMF zero(std::make_shared<Tree>(), Position{3, 0});
  zero.getEmptyFrames(empty);
  EXPECT_TRUE(empty.empty());

  auto fourTree = std::make_shared<Tree>();
  StructuredMF four(fourTree, Position{2, 1, 1, 2});
  four.setFrameIndexForGridPosition(0, {1, 0, 0, 0});
  four.getEmptyFrames(empty);
  EXPECT_EQ(empty, (std::vector<Position>{{0, 0, 0, 0}, {0, 0, 0, 1}, {1, 0, 0, 1}}));
}
