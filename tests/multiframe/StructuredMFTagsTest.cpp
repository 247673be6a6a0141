#include "multiframe/GridFixtures.h"
#include "support/QuiltraTestSupport.h"

#include <gtest/gtest.h>

#include <quiltra/quiltra.h>

using namespace Quiltra;
using namespace GridFixtures;

namespace {

// The item of the top-level dimension sequence (slot 0x10) with index, writable.
std::shared_ptr<Tree> outerItem(const Tree& tree, unsigned int index) {
  return std::const_pointer_cast<Tree>(item(tree, blockId(0x10, 0x02), index));
}

}  // namespace

TEST(StructuredMFTagsTest, PositionReadsTakeTheInnermostOccurrenceThenTheTopLevel) {
  auto tree = std::make_shared<Tree>();
  StructuredMF grid(tree, 3, 2, 1);
  tree->addTag(text(kModality, "top"));
  grid.setTagForGridPosition(text(kModality, "position"), {1, 0});
  outerItem(*tree, 1)->addTag(text(kModality, "row 1"));
  tree->addTag(text(kSliceThickness, "2", DS));
  const std::pair<Position, const char*> cases[] = {
      {{1, 0}, "position"}, {{0, 0}, "top"},   {{2, 0}, "top"},  {{0, 1}, "row 1"},
      {{1, 1}, "row 1"},    {{2, 1}, "row 1"}, {{1}, "position"}};
  for (const auto& [position, expected] : cases) {
    EXPECT_EQ(show(grid.tagForGridPosition(kModality, position)), expected);
    EXPECT_EQ(show(grid.tagForGridPosition_rw(kModality, position)), expected);
  }
  EXPECT_EQ(show(grid.tagForGridPosition(kModality, 1, 0, 9)), "position");  // third ignored
  EXPECT_EQ(show(grid.tagForGridPosition_rw(kModality, 2, 1, 9)), "row 1");
  EXPECT_EQ(show(grid.tagForGridPosition(kSliceThickness, {2, 1})), "2");
  EXPECT_EQ(show(grid.tagForGridPosition(kPixelSpacing, {2, 1})), "-");

  // An index beyond a level's items is read against the same sequence by the next index in.
  EXPECT_EQ(show(grid.tagForGridPosition(kModality, {1, 7})), "row 1");
  EXPECT_EQ(show(grid.tagForGridPosition(kModality, {0, 7})), "top");
  EXPECT_EQ(show(grid.tagForGridPosition(kModality, {7, 1})), "row 1");
}

TEST(StructuredMFTagsTest, PositionReadsKeepOneItemPerDimensionInFourDimensions) {
  auto tree = std::make_shared<Tree>();
  StructuredMF grid(tree, Position{2, 2, 2, 2});
  grid.setFrameIndexForGridPosition(3, {1, 1, 1, 1});
  const auto dim3 = outerItem(*tree, 1);
  const auto dim2 = item(*dim3, blockId(0x10, 0x02), 0);
  const auto dim1 = item(*dim2, blockId(0x10, 0x02), 1);
  dim3->addTag(text(kModality, "dimension 3"));
  std::const_pointer_cast<Tree>(dim2)->addTag(text(kModality, "dimension 2"));
  std::const_pointer_cast<Tree>(dim1)->addTag(text(kModality, "dimension 1"));
  grid.setTagForGridPosition(text(kModality, "position"), {0, 1, 0, 1});
  EXPECT_EQ(show(grid.tagForGridPosition(kModality, {0, 1, 0, 1})), "position");
  EXPECT_EQ(show(grid.tagForGridPosition(kModality, {1, 1, 0, 1})), "dimension 1");
  EXPECT_EQ(show(grid.tagForGridPosition_rw(kModality, {1, 0, 0, 1})), "dimension 2");
  EXPECT_EQ(show(grid.tagForGridPosition(kModality, {1, 0, 1, 1})), "dimension 3");
  EXPECT_EQ(show(grid.tagForGridPosition(kModality, {1, 0, 1, 0})), "-");
  EXPECT_EQ(grid.frameIndexForGridPosition({1, 1, 1, 1}), 3);
  EXPECT_EQ(grid.frameIndexForGridPosition({1, 1, 1}), -1);  // reads as [1, 1, 1, 0]
  EXPECT_EQ(grid.frameIndexForGridPosition(1, 1, 1), -1);
}

TEST(StructuredMFTagsTest, WritesStoreTheCallersObjectInThePositionItemOnly) {
  auto tree = std::make_shared<Tree>();
  StructuredMF grid(tree, Position{2, 2});
  tree->addTag(text(kModality, "top"));
  auto onlyTop = grid.tagForGridPosition_rw(kModality, {1, 1});  // creates nothing
  EXPECT_EQ(onlyTop, tree->getTag_rw(kModality));
  EXPECT_FALSE(tree->hasTag(blockId(0x10, 0x02)));

  auto mine = text(kModality, "mine");
  grid.setTagForGridPosition(mine, 1, 0, 0);
  EXPECT_EQ(tree->getTag(blockId(0x10, 0x02))->numberOfSequenceItems(), 2u);
  EXPECT_EQ(item(*outerItem(*tree, 0), blockId(0x10, 0x02), 1)->getTag(kModality), mine);
  unsigned int holding = 0;
  for (unsigned int outer = 0; outer < 2; ++outer) {
    for (unsigned int inner = 0; inner < 2; ++inner) {
      holding += item(*outerItem(*tree, outer), blockId(0x10, 0x02), inner)->tagsSize();
    }
  }
  EXPECT_EQ(holding, 1u);
  EXPECT_EQ(grid.tagForGridPosition_rw(kModality, {1, 0}), mine);
  mine->setValue(std::string("changed"), 0);
  EXPECT_EQ(show(grid.tagForGridPosition(kModality, {1, 0})), "changed");
  grid.tagForGridPosition_rw(kModality, {0, 0})->setValue(std::string("top changed"), 0);
  EXPECT_EQ(show(tree->getTag(kModality)), "top changed");

  // The id comes from the tag's description; a null tag is ignored.
  auto renamed = text(kSliceThickness, "3", DS);
  grid.setTagForGridPosition(renamed, {0, 1});
  EXPECT_EQ(grid.tagForGridPosition(kSliceThickness, {0, 1}), renamed);
  grid.setTagForGridPosition(nullptr, {0, 1});
  EXPECT_EQ(item(*outerItem(*tree, 1), blockId(0x10, 0x02), 0)->tagsSize(), 1u);
}

TEST(StructuredMFTagsTest, FrameIndexReadsTheNearestStoredValueOrMinusOne) {
  auto tree = std::make_shared<Tree>();
  StructuredMF grid(tree, Position{2, 2});
  EXPECT_EQ(grid.frameIndexForGridPosition({1, 1}), -1);
  grid.setFrameIndexForGridPosition(5, {1, 1});
  EXPECT_EQ(grid.frameIndexForGridPosition({1, 1}), 5);
  EXPECT_EQ(grid.frameIndexForGridPosition(1, 1, 0), 5);
  EXPECT_EQ(grid.frameIndexForGridPosition({0, 0}), -1);
  grid.setFrameIndexForGridPosition(65535, 0, 1, 0);
  EXPECT_EQ(grid.frameIndexForGridPosition({0, 1}), 65535);

  auto top = std::make_shared<Tag>(TagInfo(blockId(0x10, 0x03), "", US, {0, 1}));
  top->addValue(2u);
  tree->addTag(top);
  EXPECT_EQ(grid.frameIndexForGridPosition({0, 0}), 2);
  EXPECT_EQ(grid.frameIndexForGridPosition({1, 1}), 5);
  top->dropValues();
  EXPECT_EQ(grid.frameIndexForGridPosition({0, 0}), -1);
  grid.setTagForGridPosition(text(blockId(0x10, 0x03), "seven"), {0, 0});
  QuiltraTest::expectQuiltraError(
      [&] {
        grid.frameIndexForGridPosition({0, 0});
      },
      "Tag::typeChecking", "illegal type");
}

TEST(StructuredMFTagsTest, SharedTagsUnpackTheSharedFunctionalGroupsOnRequest) {
  const TagId macro1(0x0028, 0x9110), macro2(0x0020, 0x9116), empty(0x0018, 0x9112);
  const TagId pixelData(0x7FE0, 0x0010);
  auto makeSource = [&] {
    auto groups = treeOf(
        {sequence(macro1, {treeOf({text(kPixelSpacing, "0.5\\0.5", DS), text(pixelData, "macro")}),
                           treeOf({text(kImagePosition, "second item")})}),
         sequence(macro2, {treeOf({text(kSliceThickness, "1.5", DS)})}), sequence(empty, {}),
         text(kModality, "not a macro")});
    return treeOf({text(kSopClass, "1.2.3"), text(kPixelSpacing, "9\\9", DS),
                   sequence(TagId(0x5200, 0x9229), {groups, treeOf({text(kModality, "2nd")})}),
                   sequence(TagId(0x5200, 0x9230), {treeOf({})}), text(pixelData, "top")});
  };
  auto tree = std::make_shared<Tree>();
  StructuredMF grid(tree, Position{2});
  auto source = makeSource();
  source->addTag(text(creatorId(0x10), StructuredMF::privateCreator));
  source->addTag(text(blockId(0x10, 0x01), "5"));
  source->addTag(text(blockId(0x11, 0x01), "someone else's"));
  grid.setSharedTags(source, true);
  EXPECT_EQ(idsOf(*tree),
            "(0008,0016) (0018,0050) (0028,0030) (0041,0010) (0041,1001) (0041,1101) "
            "(7fe0,0010)");
  EXPECT_EQ(show(tree->getTag(kPixelSpacing)), "0.5\\0.5");  // the macro replaces the lower
  EXPECT_EQ(show(tree->getTag(pixelData)), "top");           // and a higher one replaces it
  EXPECT_EQ(show(tree->getTag(blockId(0x10, 0x01))), "2");
  EXPECT_EQ(tree->getTag(kSopClass), source->getTag(kSopClass));  // shared, not copied
  EXPECT_EQ(grid.sharedTag_rw(kSopClass), source->getTag_rw(kSopClass));

  auto flat = std::make_shared<Tree>();
  StructuredMF plain(flat, Position{2});
  plain.setSharedTags(makeSource(), false);
  EXPECT_EQ(idsOf(*flat),
            "(0008,0016) (0028,0030) (0041,0010) (0041,1001) (5200,9229) (5200,9230) "
            "(7fe0,0010)");
  EXPECT_EQ(show(flat->getTag(kPixelSpacing)), "9\\9");
  plain.setSharedTags(nullptr, true);
}

TEST(StructuredMFTagsTest, SharedTagAccessSeesAllLayersButWritesOnlyTheOwnLayer) {
  auto parent = std::make_shared<Tree>();
  parent->addTag(text(kModality, "parent"));
  auto child = std::make_shared<Tree>(parent);
  StructuredMF grid(child, Position{2});
  EXPECT_EQ(show(grid.sharedTag(kModality)), "parent");
  EXPECT_FALSE(grid.sharedTag_rw(kModality));
  EXPECT_EQ(show(grid.sharedTag(creatorId(0x10))), "Tavik StructuredMF data");
  EXPECT_FALSE(grid.sharedTag(kSopClass));
  child->addTag(text(kModality, "child"));
  EXPECT_EQ(show(grid.sharedTag_rw(kModality)), "child");
  EXPECT_EQ(show(readOnly(parent).sharedTag(kModality)), "parent");
}

TEST(StructuredMFTagsTest, PositionSpecificTagsLeaveOutOnlyTheSourcesOwnBlock) {
  auto tree = std::make_shared<Tree>();
  StructuredMF grid(tree, Position{2, 2});
  auto source = treeOf({text(creatorId(0x10), "another creator"), text(blockId(0x10, 0x01), "a"),
                        text(creatorId(0x11), StructuredMF::privateCreator),
                        text(blockId(0x11, 0x01), "3"), text(blockId(0x11, 0x03), "4"),
                        text(kModality, "CT"), text(blockId(0x12, 0x00), "b")});
  grid.setGridPositionSpecificTags(source, 1, 0, 0);
  const auto position = item(*outerItem(*tree, 0), blockId(0x10, 0x02), 1);
  EXPECT_EQ(idsOf(*position), "(0008,0060) (0041,0010) (0041,1001) (0041,1200)");
  EXPECT_EQ(position->getTag(kModality), source->getTag(kModality));

  // A source without this creator gives every tag, the view's own ids included.
  auto plain = treeOf({text(blockId(0x10, 0x03), "7"), text(kSopClass, "1.2")});
  grid.setGridPositionSpecificTags(plain, {0, 1});
  EXPECT_EQ(show(grid.tagForGridPosition(blockId(0x10, 0x03), {0, 1})), "7");
  EXPECT_EQ(show(grid.tagForGridPosition(kSopClass, {0, 1})), "1.2");
  grid.setGridPositionSpecificTags(nullptr, {0, 1});

  // Nothing to store builds no nesting.
  auto fresh = std::make_shared<Tree>();
  StructuredMF untouched(fresh, Position{2});
  untouched.setGridPositionSpecificTags(std::make_shared<Tree>(), {0});
  EXPECT_FALSE(fresh->hasTag(blockId(0x10, 0x02)));
}

// The nesting of the parent serves reads through the child until the child writes a
// position: then the child gets a nesting of its own that hides the parent's.
TEST(StructuredMFTagsTest, AViewOverAChildLayerReadsTheParentsNestingUntilItWrites) {
  auto parent = std::make_shared<Tree>();
  StructuredMF parentGrid(parent, Position{2, 2});
  parentGrid.setFrameIndexForGridPosition(7, {0, 0});
  parentGrid.setTagForGridPosition(text(kModality, "parent"), {1, 1});
  auto child = std::make_shared<Tree>(parent);
  StructuredMF grid(child);
  EXPECT_EQ(grid.getGridExtent(), (Position{2, 2}));
  EXPECT_EQ(grid.frameIndexForGridPosition({0, 0}), 7);
  EXPECT_TRUE(grid.frameExists({1, 1}));
  EXPECT_EQ(show(grid.tagForGridPosition(kModality, {1, 1})), "parent");
  EXPECT_FALSE(grid.tagForGridPosition_rw(kModality, {1, 1}));  // the parent's is not own

  grid.setFrameIndexForGridPosition(3, {1, 0});
  EXPECT_EQ(idsOf(*child, OwnLayer), "(0041,1002)");
  EXPECT_EQ(grid.frameIndexForGridPosition({1, 0}), 3);
  EXPECT_EQ(grid.frameIndexForGridPosition({0, 0}), -1);
  EXPECT_FALSE(grid.tagForGridPosition(kModality, {1, 1}));
  EXPECT_EQ(parentGrid.frameIndexForGridPosition({0, 0}), 7);
  EXPECT_EQ(parentGrid.frameIndexForGridPosition({1, 0}), -1);
}
