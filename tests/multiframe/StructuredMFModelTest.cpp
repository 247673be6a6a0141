#include "multiframe/GridFixtures.h"
#include "support/QuiltraTestSupport.h"
#include "support/TestDict.h"

#include <gtest/gtest.h>

#include <quiltra/quiltra.h>

using namespace Quiltra;
using namespace GridFixtures;

namespace {

void expectInfo(const Tag& tag, const TagId& id, const std::string& name, Vr vr,
                std::pair<unsigned int, unsigned int> multiplicity) {
  const TagInfo& info = tag.info();
  EXPECT_EQ(info.id(), id);
  EXPECT_EQ(info.name(), name);
  EXPECT_EQ(info.vr(), vr);
  EXPECT_EQ(info.multiplicity(), multiplicity);
}

// The extent values stored in the dimensions attribute, joined with backslashes.
std::string storedExtent(const Tree& tree, unsigned short slot) {
  return show(tree.getTag(blockId(slot, 0x01), AllLayers));
}

// Fills group 0041's creator slots from..to with other creators.
void takeSlots(Tree& tree, unsigned short from, unsigned short to) {
  for (unsigned short slot = from; slot <= to; ++slot) tree.addTag(text(creatorId(slot), "other"));
}

}  // namespace

TEST(StructuredMFModelTest, NewGridWritesCreatorAndExtentThenTheWholeNestingOnFirstWrite) {
  auto tree = std::make_shared<Tree>();
  StructuredMF grid(tree, Position{2, 3});
  EXPECT_EQ(idsOf(*tree), "(0041,0010) (0041,1001)");
  const auto creator = tree->getTag(creatorId(0x10));
  expectInfo(*creator, creatorId(0x10), "PrivateCreator", LO, {1, 1});
  EXPECT_EQ(creator->toString(), "Tavik StructuredMF data");
  EXPECT_STREQ(StructuredMF::privateCreator, "Tavik StructuredMF data");
  expectInfo(*tree->getTag(blockId(0x10, 0x01)), blockId(0x10, 0x01), "TavikStructuredMFDimensions",
             US, {1, 10});
  EXPECT_EQ(storedExtent(*tree, 0x10), "2\\3");
  EXPECT_EQ(grid.getGridExtent(), (Position{2, 3}));
  EXPECT_EQ(grid.getGridDimension(), 2u);
  EXPECT_FALSE(grid.frameExists({0, 0}));  // no nesting yet

  grid.setFrameIndexForGridPosition(4, {1, 2});
  const auto outer = tree->getTag(blockId(0x10, 0x02));
  expectInfo(*outer, blockId(0x10, 0x02), "TavikStructuredMFDimensionSequence", SQ, {1, 65535});
  ASSERT_EQ(outer->numberOfSequenceItems(), 3u);
  unsigned int holding = 0;
  for (const auto& level : outer->sequenceItems()) {
    EXPECT_EQ(idsOf(*level), "(0041,1002)");
    const auto inner = level->getTag(blockId(0x10, 0x02));
    ASSERT_EQ(inner->numberOfSequenceItems(), 2u);
    for (const auto& position : inner->sequenceItems()) {
      EXPECT_FALSE(position->hasParent() || position->hasDict());
      holding += position->tagsSize();
    }
  }
  EXPECT_EQ(holding, 1u);
  const auto frameIndex = item(*item(*tree, blockId(0x10, 0x02), 2), blockId(0x10, 0x02), 1)
                              ->getTag(blockId(0x10, 0x03));
  expectInfo(*frameIndex, blockId(0x10, 0x03), "TavikStructuredMFFrameIndex", US, {0, 1});
  EXPECT_EQ(frameIndex->toUInt(0), 4u);
  EXPECT_TRUE(grid.frameExists({1, 2}));
  EXPECT_FALSE(grid.frameExists({1, 1}));
}

TEST(StructuredMFModelTest, ExtentFromThreeNumbersDropsTrailingOnesAndStopsAtZero) {
  const struct {
    unsigned int x, y, z;
    Position extent;
    const char* stored;
  } cases[] = {{4, 1, 1, {4}, "4"}, {4, 3, 1, {4, 3}, "4\\3"}, {4, 1, 5, {4, 1, 5}, "4\\1\\5"},
               {4, 0, 5, {4}, "4"}, {4, 3, 0, {4, 3}, "4\\3"}, {4, 3, 5, {4, 3, 5}, "4\\3\\5"},
               {0, 7, 7, {}, ""}};
  for (const auto& c : cases) {
    auto tree = std::make_shared<Tree>();
    StructuredMF grid(tree, c.x, c.y, c.z);
    EXPECT_EQ(grid.getGridExtent(), c.extent) << c.x << " " << c.y << " " << c.z;
    EXPECT_EQ(storedExtent(*tree, 0x10), c.stored);
  }
  auto tree = std::make_shared<Tree>();
  StructuredMF grid(tree, Position{5, 0, 3});  // the vector is taken unchanged
  EXPECT_EQ(grid.getGridExtent(), (Position{5, 0, 3}));
  EXPECT_EQ(StructuredMF(tree).getGridExtent(), (Position{5, 0, 3}));
}

TEST(StructuredMFModelTest, NumberOfFramesIsTheWrappingProductOfTheExtents) {
  auto tree = std::make_shared<Tree>();
  EXPECT_EQ(StructuredMF(tree, Position{2, 3, 4}).getNumberOfFrames(), 24u);
  EXPECT_EQ(StructuredMF(tree, Position{5, 0}).getNumberOfFrames(), 0u);
  EXPECT_EQ(StructuredMF(tree, Position{}).getNumberOfFrames(), 0u);
  EXPECT_EQ(StructuredMF(tree, Position{7}).getNumberOfFrames(), 7u);
  EXPECT_EQ(StructuredMF(tree, Position{65536, 65537}).getNumberOfFrames(), 65536u);
}

TEST(StructuredMFModelTest, ReadingViewsFindTheGridByItsCreatorAndWriteNothing) {
  auto tree = std::make_shared<Tree>();
  tree->addTag(text(kModality, "MR"));
  StructuredMF none(tree);
  EXPECT_EQ(none.getGridDimension() + none.getNumberOfFrames(), 0u);
  EXPECT_TRUE(none.getGridExtent().empty());
  EXPECT_EQ(none.frameIndexForGridPosition({}), -1);
  none.setFrameIndexForGridPosition(1, {});
  EXPECT_EQ(idsOf(*tree), "(0008,0060)");

  tree->addTag(text(creatorId(0x10), "another creator"));
  tree->addTag(text(creatorId(0x12), StructuredMF::privateCreator));
  EXPECT_TRUE(StructuredMF(tree).getGridExtent().empty());  // creator without dimensions
  auto dimensions = std::make_shared<Tag>(TagInfo(blockId(0x12, 0x01), "", US, {1, 10}));
  dimensions->addValue(3u);
  dimensions->addValue(4u);
  tree->addTag(dimensions);
  const unsigned int size = tree->tagsSize();
  EXPECT_EQ(StructuredMF(tree).getGridExtent(), (Position{3, 4}));
  EXPECT_EQ(readOnly(tree).getGridExtent(), (Position{3, 4}));
  EXPECT_EQ(tree->tagsSize(), size);

  // An extent that cannot be read lets the element's exception through.
  tree->addTag(text(blockId(0x12, 0x01), "3"));
  QuiltraTest::expectQuiltraError([&] { StructuredMF grid(tree); }, "Tag::typeChecking",
                                  "illegal type");
}

TEST(StructuredMFModelTest, WritingViewsReuseTheirSlotAfterClearingItOrTakeTheLowestFree) {
  auto tree = std::make_shared<Tree>();
  tree->addTag(text(creatorId(0x10), "another creator"));
  tree->addTag(text(blockId(0x10, 0x01), "theirs"));
  StructuredMF first(tree, 4, 1, 1);
  EXPECT_EQ(show(tree->getTag(creatorId(0x11))), "Tavik StructuredMF data");
  EXPECT_EQ(storedExtent(*tree, 0x11), "4");
  first.setFrameIndexForGridPosition(9, {3});
  EXPECT_EQ(tree->getTag(blockId(0x11, 0x02))->numberOfSequenceItems(), 4u);
  EXPECT_EQ(StructuredMF(tree).frameIndexForGridPosition({3}), 9);

  tree->addTag(text(blockId(0x11, 0xFF), "left over"));
  StructuredMF second(tree, Position{2, 2});
  EXPECT_EQ(idsOf(*tree), "(0041,0010) (0041,0011) (0041,1001) (0041,1101)");
  EXPECT_EQ(storedExtent(*tree, 0x11), "2\\2");
  EXPECT_EQ(show(tree->getTag(blockId(0x10, 0x01))), "theirs");
  EXPECT_EQ(second.frameIndexForGridPosition({1, 1}), -1);
  EXPECT_EQ(first.frameIndexForGridPosition({3}), -1);  // the old grid is gone for every view
}

TEST(StructuredMFModelTest, AFullGroupLeavesTheDataSetUnchangedAndTheGridEmpty) {
  auto tree = std::make_shared<Tree>();
  takeSlots(*tree, 0x10, 0xFF);
  // Without a slot the ids stay (0000,0000); an element there is no grid.
  tree->addTag(sequence(TagId(0u), {std::make_shared<Tree>()}));
  const unsigned int size = tree->tagsSize();
  StructuredMF grid(tree, Position{2, 2});
  EXPECT_TRUE(grid.getGridExtent().empty());
  grid.setFrameIndexForGridPosition(1, {0, 0});
  grid.setTagForGridPosition(text(kModality, "CT"), {0, 0});
  grid.setSharedTags(treeOf({text(kModality, "MR")}), false);
  grid.normalizeTagStructure(0.0, true);
  EXPECT_EQ(tree->tagsSize(), size + 1);  // only the shared tag arrived
  EXPECT_FALSE(grid.frameExists({0, 0}));
  EXPECT_EQ(grid.frameIndexForGridPosition({0, 0}), -1);
  EXPECT_EQ(show(grid.tagForGridPosition(kModality, {0, 0})), "MR");
  EXPECT_EQ(grid.extractTagTreeForGridPosition({0, 0}, StructuredMF::PositionOnly)->tagsSize(), 0u);

  tree->removeTag(creatorId(0x80));  // one slot free again
  StructuredMF later(tree, Position{2});
  EXPECT_EQ(storedExtent(*tree, 0x80), "2");
}

TEST(StructuredMFModelTest, TheCreatorElementTakesTheDescriptionOfTheDataSetsDictionary) {
  struct GridDict : QuiltraTest::TestDict {
    TagId answerId;
    TagInfo tagInfo(const TagId& id) const override {
      if (id.groupId() != 0x0041) return TestDict::tagInfo(id);
      return TagInfo(answerId.rawId() != 0 ? answerId : id, "GridOwner", LO, {1, 3});
    }
    using TestDict::tagInfo;
  };
  auto dict = std::make_shared<GridDict>();
  auto tree = std::make_shared<Tree>();
  tree->setDict(dict);
  StructuredMF grid(tree, Position{2});
  expectInfo(*tree->getTag(creatorId(0x10)), creatorId(0x10), "GridOwner", LO, {1, 3});

  // The element goes under the id of the description given.
  dict->answerId = TagId(0x0041, 0x0020);
  auto other = std::make_shared<Tree>();
  other->setDict(dict);
  StructuredMF moved(other, Position{2});
  EXPECT_EQ(idsOf(*other), "(0041,0020) (0041,1001)");

  // A dictionary that cannot describe the element fails the constructor.
  auto plain = std::make_shared<Tree>();
  plain->setDict(std::make_shared<QuiltraTest::TestDict>());
  QuiltraTest::expectQuiltraError([&] { StructuredMF failing(plain, Position{2}); },
                                  "TestDict::tagInfo", "unknown tag");
}

// Position [p0, p1, ..., pn-1] lies in item p(n-1) of the top level, item p(n-2) of that
// item's sequence, and so on; every position item is reached and none is shared.
TEST(StructuredMFModelTest, PositionItemsNestOneLevelPerDimensionForOneToFourDimensions) {
  const Position extents[] = {{5}, {3, 2}, {2, 3, 2}, {2, 1, 3, 2}};
  for (const Position& extent : extents) {
    auto tree = std::make_shared<Tree>();
    StructuredMF grid(tree, extent);
    const unsigned int frames = grid.getNumberOfFrames();
    Position position(extent.size(), 0);
    for (unsigned int frame = 0; frame < frames; ++frame) {
      for (std::size_t d = 0, rest = frame; d < extent.size(); rest /= extent[d], ++d) {
        position[d] = static_cast<unsigned int>(rest % extent[d]);
      }
      grid.setFrameIndexForGridPosition(frame, position);
      std::shared_ptr<const Tree> level = tree;
      for (std::size_t d = extent.size(); d-- > 0;) {
        level = item(*level, blockId(0x10, 0x02), position[d]);
        ASSERT_TRUE(level);
      }
      EXPECT_EQ(level->getTag(blockId(0x10, 0x03))->toUInt(0), frame);
      EXPECT_EQ(level->tagsSize(), 1u);
    }
    const StructuredMF reader = readOnly(tree);
    for (unsigned int frame = 0; frame < frames; ++frame) {
      for (std::size_t d = 0, rest = frame; d < extent.size(); rest /= extent[d], ++d) {
        position[d] = static_cast<unsigned int>(rest % extent[d]);
      }
      EXPECT_EQ(reader.frameIndexForGridPosition(position), static_cast<int>(frame));
      EXPECT_TRUE(reader.frameExists(position));
    }
  }
}

// An index beyond a level's items and a nesting that stops short reach no position item.
TEST(StructuredMFModelTest, PositionsTheNestingDoesNotReachHaveNoItem) {
  auto tree = std::make_shared<Tree>();
  StructuredMF grid(tree, Position{2, 2});
  grid.setFrameIndexForGridPosition(1, {0, 0});
  const auto before = tree->copy();
  grid.setTagForGridPosition(text(kModality, "CT"), {2, 0});
  grid.setTagForGridPosition(text(kModality, "CT"), {0, 5});
  EXPECT_FALSE(grid.frameExists({2, 0}) || grid.frameExists({0, 2}));
  EXPECT_TRUE(grid.frameExists({0}));  // a short position reads as [0, 0]
  EXPECT_EQ(item(*tree, blockId(0x10, 0x02), 0)->tagsSize(), 1u);

  // Data from elsewhere: an outer item without its sequence, a null item, a plain element.
  std::const_pointer_cast<Tree>(item(*tree, blockId(0x10, 0x02), 1))
      ->removeTag(blockId(0x10, 0x02));
  grid.setFrameIndexForGridPosition(3, {0, 1});
  EXPECT_FALSE(grid.frameExists({0, 1}));
  tree->getTag_rw(blockId(0x10, 0x02))->dropSequenceItem(0);
  EXPECT_FALSE(grid.frameExists({0, 0}));
  EXPECT_EQ(grid.frameIndexForGridPosition({0, 0}), -1);
  tree->addTag(text(blockId(0x10, 0x02), "not a sequence"));
  grid.setFrameIndexForGridPosition(3, {0, 0});
  EXPECT_FALSE(grid.frameExists({0, 0}));
  EXPECT_EQ(tree->getTag(blockId(0x10, 0x02))->toString(), "not a sequence");
}

TEST(StructuredMFModelTest, AGridOfDimensionZeroHasNoPositions) {
  auto tree = std::make_shared<Tree>();
  StructuredMF grid(tree, 0, 0, 0);
  grid.setFrameIndexForGridPosition(1, {});
  grid.setTagForGridPosition(text(kModality, "CT"), {0});
  EXPECT_EQ(idsOf(*tree), "(0041,0010) (0041,1001)");
  EXPECT_EQ(tree->getTag(blockId(0x10, 0x01))->numberOfValues(), 0u);
  EXPECT_FALSE(grid.frameExists({}));
  EXPECT_EQ(grid.frameIndexForGridPosition({}), -1);
  std::vector<Position> empty{{1}};
  grid.getEmptyFrames(empty);
  EXPECT_TRUE(empty.empty());
}

TEST(StructuredMFModelTest, CopiesShareTheDataSetAndReadOnlyViewsNeverWrite) {
  auto tree = std::make_shared<Tree>();
  StructuredMF grid(tree, Position{2, 2});
  StructuredMF copy = grid;
  copy.setFrameIndexForGridPosition(6, {1, 0});
  EXPECT_EQ(grid.frameIndexForGridPosition({1, 0}), 6);
  StructuredMF assigned(std::make_shared<Tree>());
  assigned = grid;
  EXPECT_EQ(assigned.tagTree(), tree);
  EXPECT_EQ(assigned.frameIndexForGridPosition(1, 0, 0), 6);

  StructuredMF reader = readOnly(tree);
  const auto before = tree->copy();
  reader.setFrameIndexForGridPosition(7, {0, 0});
  reader.setTagForGridPosition(text(kModality, "CT"), {0, 0});
  reader.setGridPositionSpecificTags(treeOf({text(kModality, "CT")}), {0, 0});
  reader.setSharedTags(treeOf({text(kModality, "CT")}), false);
  reader.normalizeTagStructure(0.0, false);
  EXPECT_FALSE(reader.tagTree() || reader.sharedTag_rw(creatorId(0x10)) ||
               reader.tagForGridPosition_rw(blockId(0x10, 0x03), {1, 0}));
  EXPECT_EQ(std::as_const(reader).tagTree(), tree);
  EXPECT_EQ(reader.frameIndexForGridPosition({1, 0}), 6);
  EXPECT_TRUE(reader.frameExists({1, 0}));
  EXPECT_FALSE(reader.frameExists({0, 0}));
  EXPECT_EQ(*reader.sharedTag(creatorId(0x10)), *before->getTag(creatorId(0x10)));
  EXPECT_EQ(idsOf(*tree), idsOf(*before));
  EXPECT_EQ(*tree->getTag(blockId(0x10, 0x02)), *before->getTag(blockId(0x10, 0x02)));

  // No data set at all: empty answers everywhere.
  StructuredMF nothing(std::shared_ptr<Tree>(), Position{3});
  EXPECT_TRUE(nothing.getGridExtent().empty());
  EXPECT_FALSE(nothing.tagTree() || nothing.sharedTag(kModality) ||
               nothing.tagForGridPosition(kModality, {0}));
  EXPECT_EQ(nothing.extractSharedTagTree()->tagsSize(), 0u);
}
