#include "multiframe/GridFixtures.h"
#include "support/QuiltraTestSupport.h"

#include <gtest/gtest.h>

#include <quiltra/quiltra.h>

using namespace Quiltra;
using namespace GridFixtures;

namespace {

// Position items of a one-dimensional grid in slot 0x10.
std::shared_ptr<const Tree> positionItem(const Tree& tree, unsigned int index) {
  return item(tree, blockId(0x10, 0x02), index);
}

// A grid of extent [3] whose top level says MR and whose position [1] says CT.
struct ModalityDiffers {
  std::shared_ptr<Tree> tree = std::make_shared<Tree>();
  StructuredMF grid{tree, Position{3}};
  std::shared_ptr<Tag> top = text(kModality, "MR");

  ModalityDiffers() {
    tree->addTag(top);
    grid.setTagForGridPosition(text(kModality, "CT"), {1});
  }
};

}  // namespace

TEST(StructuredMFNormalizationTest, EqualAttributesMoveUpAndDifferingOnesStayBelow) {
  auto tree = std::make_shared<Tree>();
  StructuredMF grid(tree, Position{3});
  std::vector<std::shared_ptr<Tag>> thickness;
  const char* positions[] = {"0\\0\\1", "0\\0\\2", "0\\0\\3"};
  for (unsigned int i = 0; i < 3; ++i) {
    thickness.push_back(decimal(kSliceThickness, 1.0 + i * 1e-4));
    grid.setTagForGridPosition(thickness.back(), {i});
    grid.setTagForGridPosition(text(kImagePosition, positions[i], DS), {i});
    grid.setFrameIndexForGridPosition(7, {i});
  }
  grid.normalizeTagStructure(1e-3, true);
  EXPECT_EQ(tree->getTag(kSliceThickness), thickness[0]);  // the first one's object moved up
  EXPECT_EQ(show(tree->getTag(blockId(0x10, 0x03))), "7");
  for (unsigned int i = 0; i < 3; ++i) {
    EXPECT_EQ(idsOf(*positionItem(*tree, i)), "(0020,0032)");
    EXPECT_EQ(show(grid.tagForGridPosition(kImagePosition, {i})), positions[i]);
    EXPECT_EQ(grid.frameIndexForGridPosition({i}), 7);
    EXPECT_EQ(show(grid.tagForGridPosition(kSliceThickness, {i})), "1");
  }

  // With no tolerance the thicknesses differ: they stay where they are.
  auto strictTree = std::make_shared<Tree>();
  StructuredMF strict(strictTree, Position{2});
  strict.setTagForGridPosition(decimal(kSliceThickness, 1.0), {0});
  strict.setTagForGridPosition(decimal(kSliceThickness, 1.0001), {1});
  strict.normalizeTagStructure(0.0, true);
  EXPECT_FALSE(strictTree->hasTag(kSliceThickness));
  EXPECT_EQ(show(strict.tagForGridPosition(kSliceThickness, {1})), "1.0001");
}

TEST(StructuredMFNormalizationTest, ADifferingAttributeIsPushedDownWithTheLevelsObject) {
  ModalityDiffers example;
  auto& [tree, grid, top] = example;
  grid.setFrameIndexForGridPosition(0, {0});
  grid.setFrameIndexForGridPosition(2, {2});
  grid.normalizeTagStructure(0.0, true);
  EXPECT_FALSE(tree->hasTag(kModality));
  EXPECT_EQ(positionItem(*tree, 0)->getTag(kModality), top);
  EXPECT_EQ(positionItem(*tree, 2)->getTag(kModality), top);
  EXPECT_EQ(show(positionItem(*tree, 1)->getTag(kModality)), "CT");
  EXPECT_EQ(grid.frameIndexForGridPosition({0}) + grid.frameIndexForGridPosition({2}), 2);
}

TEST(StructuredMFNormalizationTest, WithoutSharingItemsAreOnlyCompleted) {
  ModalityDiffers example;
  auto& [tree, grid, top] = example;
  grid.setTagForGridPosition(decimal(kSliceThickness, 2.0), {2});
  grid.setFrameIndexForGridPosition(5, {0});
  grid.setFrameIndexForGridPosition(5, {1});
  grid.setFrameIndexForGridPosition(5, {2});
  grid.normalizeTagStructure(0.0, false);
  EXPECT_EQ(tree->getTag(kModality), top);
  EXPECT_FALSE(tree->hasTag(blockId(0x10, 0x03)));
  for (unsigned int i = 0; i < 3; ++i) {
    EXPECT_EQ(idsOf(*positionItem(*tree, i)), "(0008,0060) (0018,0050) (0041,1003)") << i;
  }
  EXPECT_EQ(positionItem(*tree, 0)->getTag(kModality), top);
  EXPECT_EQ(show(positionItem(*tree, 1)->getTag(kModality)), "CT");
  const auto placeholder = positionItem(*tree, 0)->getTag(kSliceThickness);
  EXPECT_TRUE(placeholder->isEmpty());
  EXPECT_EQ(placeholder->info().vr(), DS);
  EXPECT_EQ(show(grid.tagForGridPosition(kSliceThickness, {0})), "");
}

TEST(StructuredMFNormalizationTest, EmptyPositionsTakeOnlyPlaceholdersAndNeverCompare) {
  auto tree = std::make_shared<Tree>();
  StructuredMF grid(tree, Position{4});
  tree->addTag(text(kModality, "MR"));
  grid.setTagForGridPosition(text(kModality, "CT"), {0});
  grid.setTagForGridPosition(text(kImagePosition, "1\\1\\1", DS), {0});
  grid.setTagForGridPosition(text(kImagePosition, "1\\1\\1", DS), {2});
  grid.setTagForGridPosition(text(kImagePosition, "1\\1\\1", DS), {3});
  grid.normalizeTagStructure(0.0, true);
  // Equal in every non-empty position: up, out of every position, the empty one included.
  EXPECT_EQ(show(tree->getTag(kImagePosition)), "1\\1\\1");
  // Differs from the top level: down, a placeholder for the empty position.
  EXPECT_EQ(show(positionItem(*tree, 3)->getTag(kModality)), "MR");
  const auto placeholder = positionItem(*tree, 1)->getTag(kModality);
  EXPECT_TRUE(placeholder->isEmpty());
  EXPECT_EQ(idsOf(*positionItem(*tree, 1)), "(0008,0060)");
  EXPECT_TRUE(grid.frameExists({1}));
  std::vector<Position> empty;
  grid.getEmptyFrames(empty);
  EXPECT_EQ(empty, (std::vector<Position>{{1}}));
}

TEST(StructuredMFNormalizationTest, InnerLevelsGoFirstAndCommonAttributesReachTheTop) {
  auto tree = std::make_shared<Tree>();
  StructuredMF grid(tree, Position{2, 2});
  for (unsigned int i = 0; i < 2; ++i) {
    for (unsigned int j = 0; j < 2; ++j) {
      grid.setTagForGridPosition(text(kModality, "CT"), {i, j});
      grid.setTagForGridPosition(decimal(kSliceThickness, 1.0 + j), {i, j});  // per row
      grid.setFrameIndexForGridPosition(i + 2 * j, {i, j});
    }
  }
  grid.normalizeTagStructure(0.0, true);
  EXPECT_EQ(idsOf(*tree), "(0008,0060) (0041,0010) (0041,1001) (0041,1002)");
  for (unsigned int j = 0; j < 2; ++j) {
    const auto row = item(*tree, blockId(0x10, 0x02), j);
    EXPECT_EQ(idsOf(*row), "(0018,0050) (0041,1002)");
    for (unsigned int i = 0; i < 2; ++i) {
      EXPECT_EQ(idsOf(*item(*row, blockId(0x10, 0x02), i)), "(0041,1003)");
      EXPECT_EQ(grid.frameIndexForGridPosition({i, j}), static_cast<int>(i + 2 * j));
      EXPECT_EQ(show(grid.tagForGridPosition(kSliceThickness, {i, j})), j == 0 ? "1" : "2");
    }
  }
}

TEST(StructuredMFNormalizationTest, GroupTwoAndTheNestingAreLeftAlone) {
  auto tree = std::make_shared<Tree>();
  StructuredMF grid(tree, Position{2});
  const TagId syntax(0x0002, 0x0010);
  grid.setTagForGridPosition(text(syntax, "1.2.840.10008.1.2.1", UI), {0});
  grid.setTagForGridPosition(text(syntax, "1.2.840.10008.1.2.1", UI), {1});
  grid.setTagForGridPosition(text(TagId(0x0002, 0x0002), "1.2", UI), {0});
  grid.normalizeTagStructure(0.0, true);
  EXPECT_FALSE(tree->hasTag(syntax));
  EXPECT_EQ(idsOf(*positionItem(*tree, 0)), "(0002,0002) (0002,0010)");
  EXPECT_EQ(idsOf(*positionItem(*tree, 1)), "(0002,0010)");
  EXPECT_EQ(tree->getTag(blockId(0x10, 0x02))->numberOfSequenceItems(), 2u);
}

TEST(StructuredMFNormalizationTest, ViewsWithoutAWritableDataSetNormaliseNothing) {
  auto tree = std::make_shared<Tree>();
  StructuredMF grid(tree, Position{2});
  grid.setTagForGridPosition(text(kModality, "CT"), {0});
  grid.setTagForGridPosition(text(kModality, "CT"), {1});
  readOnly(tree).normalizeTagStructure(0.0, true);
  EXPECT_FALSE(tree->hasTag(kModality));
  StructuredMF(tree).normalizeTagStructure(0.0, true);
  EXPECT_EQ(show(tree->getTag(kModality)), "CT");
}
