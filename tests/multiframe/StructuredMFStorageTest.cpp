#include "multiframe/GridFixtures.h"

#include <gtest/gtest.h>
#include <sstream>

#include <quiltra/quiltra.h>

using namespace Quiltra;
using namespace GridFixtures;

namespace {

// A 3 x 2 grid in slot 0x11 (behind another creator) with frame indexes, position tags, a
// row attribute, shared attributes and one empty position.
std::shared_ptr<Tree> gridDataSet() {
  auto tree = std::make_shared<Tree>();
  tree->addTag(text(creatorId(0x10), "another creator"));
  StructuredMF grid(tree, Position{3, 2});
  tree->addTag(text(kModality, "MR"));
  tree->addTag(text(kSopClass, "1.2.840.10008.5.1.4.1.1.4.1", UI));
  for (unsigned int j = 0; j < 2; ++j) {
    for (unsigned int i = 0; i < 3; ++i) {
      if (i == 2 && j == 1) continue;
      grid.setFrameIndexForGridPosition(i + 3 * j, {i, j});
      grid.setTagForGridPosition(
          text(kImagePosition, "0\\" + std::to_string(i) + "\\" + std::to_string(j), DS), {i, j});
    }
  }
  std::const_pointer_cast<Tree>(item(*tree, blockId(0x11, 0x02), 1))
      ->addTag(decimal(kSliceThickness, 2.5));
  return tree;
}

// Both views answer alike for every position: frame index, the tags a position sees, its
// existence, its extracted data set, and the empty positions.
void expectSameAnswers(const StructuredMF& written, const StructuredMF& read) {
  ASSERT_EQ(read.getGridExtent(), written.getGridExtent());
  const TagId ids[] = {kModality, kSopClass, kSliceThickness, kImagePosition, blockId(0x11, 3)};
  for (unsigned int j = 0; j < 2; ++j) {
    for (unsigned int i = 0; i < 3; ++i) {
      const Position position{i, j};
      EXPECT_EQ(read.frameIndexForGridPosition(position),
                written.frameIndexForGridPosition(position));
      EXPECT_EQ(read.frameExists(position), written.frameExists(position));
      for (const TagId& id : ids) {
        EXPECT_EQ(show(read.tagForGridPosition(id, position)),
                  show(written.tagForGridPosition(id, position)))
            << id.toString();
      }
      const auto expected =
          written.extractTagTreeForGridPosition(position, StructuredMF::MergedWithShared);
      const auto actual =
          read.extractTagTreeForGridPosition(position, StructuredMF::MergedWithShared);
      ASSERT_EQ(idsOf(*actual), idsOf(*expected));
      const auto extractedIds = expected->tagIds(AllLayers);
      for (const TagId& id : *extractedIds) {
        EXPECT_EQ(*actual->getTag(id), *expected->getTag(id));
      }
    }
  }
  std::vector<Position> writtenEmpty, readEmpty;
  written.getEmptyFrames(writtenEmpty);
  read.getEmptyFrames(readEmpty);
  EXPECT_EQ(readEmpty, writtenEmpty);
  EXPECT_EQ(readEmpty, (std::vector<Position>{{2, 1}}));
}

}  // namespace

TEST(StructuredMFStorageTest, AGridSurvivesTheBinaryForm) {
  const auto tree = gridDataSet();
  Quiltra_Serialization::MemorySink sink;
  tree->serializeX(sink);
  Quiltra_Serialization::MemorySource source(sink.bytes());
  auto back = std::make_shared<Tree>();
  back->deserializeX(source);
  expectSameAnswers(StructuredMF(tree), readOnly(back));
  EXPECT_EQ(StructuredMF(back).frameIndexForGridPosition(1, 1, 0), 4);
}

TEST(StructuredMFStorageTest, AGridSurvivesTheTextStreamForm) {
  const auto tree = gridDataSet();
  std::stringstream stream;
  tree->toStream(stream);
  auto back = std::make_shared<Tree>();
  back->fromStream(stream);
  expectSameAnswers(StructuredMF(tree), StructuredMF(back));

  // The read-back grid is an ordinary one: normalising it changes both alike.
  StructuredMF(tree).normalizeTagStructure(0.0, true);
  StructuredMF(back).normalizeTagStructure(0.0, true);
  expectSameAnswers(StructuredMF(tree), StructuredMF(back));
}
