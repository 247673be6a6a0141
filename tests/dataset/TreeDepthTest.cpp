#include "support/QuiltraTestSupport.h"

#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <string>

#include <quiltra/quiltra.h>

// Long chains of layers (an edit history) and deep nesting built through the API. Every walk
// over the layers, destruction included, is a loop, so the chain length is bounded only by
// memory; nesting is walked recursively and stays within an 8 MB stack at 10,000 levels.
//
// Sizes: 1,000,000 layers and 10,000 nested levels in optimised builds. Under AddressSanitizer
// and in unoptimised (debug) builds the chain keeps its full length (no walk over it
// recurses) but nesting drops to 2,000 levels: their larger frames make each nested level
// several times deeper, and 5,000 levels (sanitizer) or 10,000 levels (g++ -O0) already
// exhaust an 8 MB stack there.

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QUILTRA_TEST_LARGE_FRAMES 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || !defined(__OPTIMIZE__)
#define QUILTRA_TEST_LARGE_FRAMES 1
#endif

using namespace Quiltra;

namespace {

constexpr int kLayers = 1000000;
#ifdef QUILTRA_TEST_LARGE_FRAMES
constexpr int kLevels = 2000;
#else
constexpr int kLevels = 10000;
#endif

// Every 1000th layer adds one element, numbered layer / 1000; the layer 500 above one that
// added an odd-numbered element hides it again.
constexpr int kEvery = 1000;

const TagId kSequence(0x0040, 0xA730);

TagId idOfLayer(int layer) {
  return TagId(0x0011, static_cast<unsigned short>(0x1000 + layer / kEvery));
}

std::shared_ptr<Tag> textTag(const TagId& id, const std::string& text) {
  auto tag = std::make_shared<Tag>(TagInfo(id, "Text", LO, {1, 1}));
  tag->addValue(text);
  return tag;
}

std::shared_ptr<Tree> longChain(int layers) {
  auto top = std::make_shared<Tree>();
  for (int layer = 1; layer < layers; ++layer) {
    top = std::make_shared<Tree>(std::shared_ptr<const Tree>(std::move(top)));
    if (layer % kEvery == 0) top->addTag(textTag(idOfLayer(layer), "added"));
    const int below = layer - kEvery / 2;
    if (layer % kEvery == kEvery / 2 && (below / kEvery) % 2 == 1) top->removeTag(idOfLayer(below));
  }
  return top;
}

std::shared_ptr<Tree> nested(int levels) {
  auto tree = std::make_shared<Tree>();
  tree->addTag(textTag(TagId(0x0010, 0x0010), "deepest"));
  for (int level = 0; level < levels; ++level) {
    auto outer = std::make_shared<Tree>();
    auto sequence = std::make_shared<Tag>(TagInfo(kSequence, "Sequence", SQ, {1, 1}));
    sequence->addSequenceItem(tree);
    outer->addTag(sequence);
    tree = outer;
  }
  return tree;
}

}  // namespace

// A chain of 100,000 layers once overflowed the stack in tagIds, mergedCopy, serializeX and
// destruction, which all recursed through the parents.
TEST(TreeDepthTest, MillionLayerChainIsListedMergedStoredAndDestroyedWithoutRecursion) {
  auto top = longChain(kLayers);
  const auto ids = top->tagIds(AllLayers);  // the even-numbered elements 2 to 998
  ASSERT_EQ(ids->size(), 499u);
  EXPECT_EQ(ids->front(), idOfLayer(2000));
  EXPECT_EQ(ids->back(), idOfLayer(998000));
  EXPECT_EQ(*top->tagIds(ExceptRoot), *ids);
  EXPECT_EQ(top->getTags(AllLayers)->size(), 499u);
  const auto merged = top->mergedCopy(AllLayers);
  EXPECT_EQ(*merged->tagIds(OwnLayer), *ids);
  EXPECT_EQ(top->copy(idOfLayer(0), idOfLayer(kLayers))->tagsSize(), 499u);
  EXPECT_EQ(top->copy(ids)->tagsSize(), 499u);
  EXPECT_EQ(top->copy()->parent(), top->parent());

  Quiltra_Serialization::MemorySink sink;
  top->serializeX(sink);
  Quiltra_Serialization::MemorySource source(sink.bytes());
  Tree read;
  read.deserializeX(source);
  EXPECT_EQ(*read.tagIds(OwnLayer), *ids);

  std::weak_ptr<const Tree> root = top->root();
  top.reset();
  EXPECT_TRUE(root.expired());
}

// Nesting once overflowed at 20,000 levels in copy() and 70,000 in destruction; 10,000 levels
// stay supported by every operation but storage, which refuses more than 256 levels before
// writing anything.
TEST(TreeDepthTest, TenThousandNestedLevelsAreCopiedMergedAndDestroyed) {
  auto tree = nested(kLevels);
  const auto copied = tree->copy();
  EXPECT_EQ(*copied->getTag(kSequence), *tree->getTag(kSequence));
  const auto merged = tree->mergedCopy(AllLayers);
  EXPECT_EQ(merged->tagIds(AllLayers)->size(), 1u);
  auto layer = std::make_shared<Tree>(tree);
  layer->setDict(nullptr);
  EXPECT_EQ(layer->tagIds(AllLayers)->size(), 1u);

  Quiltra_Serialization::MemorySink sink;
  QuiltraTest::expectQuiltraError([&] { tree->serializeX(sink); }, "Tree::serializeX",
                                  "nesting too deep");
  EXPECT_TRUE(sink.bytes().empty());
  std::ostringstream out;
  QuiltraTest::expectQuiltraError([&] { tree->toStream(out); }, "Tree::toStream",
                                  "nesting too deep");
  EXPECT_EQ(out.str(), "");
}
