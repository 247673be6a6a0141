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
const TagId kRows(0x0028, 0x0010);
const TagId kContentSequence(0x0040, 0xA730);

std::shared_ptr<Tag> makeTag(const TagId& id, const std::string& text) {
  auto tag = std::make_shared<Tag>(TagInfo(id, "", LO, {1, 1}));
  tag->addValue(text);
  return tag;
}

std::shared_ptr<Tree> layer(std::shared_ptr<const Tree> parent,
                            const std::vector<std::pair<TagId, std::string>>& elements) {
  auto tree = parent ? std::make_shared<Tree>(parent) : std::make_shared<Tree>();
  for (const auto& element : elements) tree->addTag(makeTag(element.first, element.second));
  return tree;
}

std::vector<TagId> idsOf(const std::shared_ptr<Tree::TagIdList>& ids) {
  return *ids;
}

std::vector<TagId> keysOf(const std::shared_ptr<Tree::ConstTagMap>& tags) {
  std::vector<TagId> keys;
  for (const auto& entry : *tags) keys.push_back(entry.first);
  return keys;
}

std::string seen(const Tree& tree, const TagId& id) {
  auto tag = tree.getTag(id, AllLayers);
  return tag ? tag->toString(0) : "-";
}

std::shared_ptr<Tree> withDict(std::shared_ptr<Tree> tree) {
  tree->setDict(std::make_shared<QuiltraTest::TestDict>());
  return tree;
}

// root (with a dictionary that the layers take over): Modality, PatientId; middle: removes
// PatientId, adds PatientName; top: Rows and overrides Modality.
struct Chain {
  std::shared_ptr<Tree> root = withDict(layer(nullptr, {{kModality, "CT"}, {kPatientId, "42"}}));
  std::shared_ptr<Tree> middle = layer(root, {{kPatientName, "Doe"}});
  std::shared_ptr<Tree> top = layer(middle, {{kRows, "512"}, {kModality, "MR"}});

  Chain() { middle->removeTag(kPatientId); }
};

}  // namespace

// Listings.

TEST(TreeCopiesTest, ExceptRootListingsLeaveOutRoot) {
  Chain chain;
  EXPECT_TRUE(chain.root->tagIds(ExceptRoot)->empty());
  EXPECT_TRUE(chain.root->getTags(ExceptRoot)->empty());
  EXPECT_EQ(idsOf(chain.middle->tagIds(ExceptRoot)), (std::vector<TagId>{kPatientName}));
  EXPECT_EQ(idsOf(chain.top->tagIds(ExceptRoot)),
            (std::vector<TagId>{kModality, kPatientName, kRows}));
  EXPECT_EQ(chain.top->getTags(ExceptRoot)->at(kModality)->toString(0), "MR");
}

TEST(TreeCopiesTest, ListingsFollowLayersAndDeletionMarks) {
  Chain chain;
  EXPECT_EQ(idsOf(chain.top->tagIds(AllLayers)),
            (std::vector<TagId>{kModality, kPatientName, kRows}));
  EXPECT_EQ(idsOf(chain.middle->tagIds(OwnLayer)), (std::vector<TagId>{kPatientName}));
  EXPECT_EQ(chain.middle->tags().count(kPatientId), 1u);  // the placeholder stays

  auto tags = chain.top->getTags(AllLayers);
  EXPECT_EQ(keysOf(tags), (std::vector<TagId>{kModality, kPatientName, kRows}));
  EXPECT_EQ(tags->at(kModality), chain.top->getTag_rw(kModality));  // shared, top wins
  EXPECT_EQ(tags->at(kPatientName), chain.middle->getTag_rw(kPatientName));
}

TEST(TreeCopiesTest, RangesAreInclusiveUnderEverySelector) {
  auto root = layer(nullptr, {{TagId(0u), "first"}, {kModality, "CT"}, {kRows, "512"}});
  auto child = layer(root, {{kPatientName, "Doe"}, {kPatientId, "42"}, {TagId(~0u), "last"}});
  EXPECT_EQ(idsOf(child->tagIds(kPatientName, kPatientId, OwnLayer)),
            (std::vector<TagId>{kPatientName, kPatientId}));
  EXPECT_EQ(keysOf(child->getTags(kPatientName, kPatientName, OwnLayer)),
            (std::vector<TagId>{kPatientName}));
  EXPECT_EQ(idsOf(child->tagIds(kModality, kRows, AllLayers)),
            (std::vector<TagId>{kModality, kPatientName, kPatientId, kRows}));
  EXPECT_EQ(idsOf(child->tagIds(kModality, kRows, ExceptRoot)),
            (std::vector<TagId>{kPatientName, kPatientId}));
  // The whole-range forms reach (0000,0000) and (ffff,ffff).
  EXPECT_EQ(idsOf(child->tagIds(AllLayers)), (std::vector<TagId>{TagId(0u), kModality, kPatientName,
                                                                 kPatientId, kRows, TagId(~0u)}));

  EXPECT_TRUE(child->tagIds(kRows, kModality, AllLayers)->empty());
  EXPECT_TRUE(child->tagIds(kPatientId, kPatientName, OwnLayer)->empty());
  EXPECT_TRUE(child->getTags(kRows, kModality, AllLayers)->empty());
  EXPECT_EQ(child->copy(kRows, kModality)->tagsSize(), 0u);
}

TEST(TreeCopiesTest, InvalidSelectorsGiveEmptyResults) {
  Chain chain;
  for (int raw : {-1, 3, 7}) {
    const auto selector = static_cast<TagSelector>(raw);
    EXPECT_TRUE(chain.top->tagIds(selector)->empty()) << raw;
    EXPECT_TRUE(chain.top->tagIds(kModality, kRows, selector)->empty()) << raw;
    EXPECT_TRUE(chain.top->getTags(selector)->empty()) << raw;
    EXPECT_EQ(chain.top->mergedCopy(selector)->tagsSize(), 0u) << raw;
  }
}

// Copies and merges.

TEST(TreeCopiesTest, MergedCopyIsFlatAndIndependentOfChain) {
  Chain chain;
  ASSERT_TRUE(chain.top->hasDict());
  auto merged = chain.top->mergedCopy(AllLayers);
  EXPECT_FALSE(merged->hasParent());
  EXPECT_FALSE(merged->hasDict());
  EXPECT_EQ(idsOf(merged->tagIds(OwnLayer)), idsOf(chain.top->tagIds(AllLayers)));
  EXPECT_EQ(merged->tagsSize(), 3u);  // no placeholder for the removed id
  EXPECT_EQ(seen(*merged, kModality), "MR");

  merged->getTag_rw(kPatientName)->setValue(std::string("Roe"), 0);
  EXPECT_EQ(seen(*chain.top, kPatientName), "Doe");
  EXPECT_EQ(idsOf(chain.top->mergedCopy(ExceptRoot)->tagIds(OwnLayer)),
            (std::vector<TagId>{kModality, kPatientName, kRows}));
  EXPECT_EQ(chain.middle->mergedCopy(ExceptRoot)->tagsSize(), 1u);
}

TEST(TreeCopiesTest, CopyByRangeTakesAllLayersView) {
  Chain chain;
  auto copied = chain.top->copy(kModality, kPatientId);
  EXPECT_FALSE(copied->hasParent());
  EXPECT_EQ(idsOf(copied->tagIds(OwnLayer)), (std::vector<TagId>{kModality, kPatientName}));
  EXPECT_NE(copied->getTag_rw(kPatientName), chain.middle->getTag_rw(kPatientName));
}

TEST(TreeCopiesTest, CopyByIdsIgnoresMissingDuplicatesAndOrder) {
  Chain chain;
  auto ids = std::make_shared<Tree::TagIdList>(
      Tree::TagIdList{kRows, kPatientName, kRows, kPatientId, TagId(0x7777, 0x0001)});
  auto copied = chain.top->copy(ids);
  EXPECT_FALSE(copied->hasDict());
  EXPECT_EQ(idsOf(copied->tagIds(OwnLayer)), (std::vector<TagId>{kPatientName, kRows}));
  EXPECT_NE(copied->getTag_rw(kPatientName), chain.middle->getTag_rw(kPatientName));

  auto missing = std::make_shared<Tree::TagIdList>(Tree::TagIdList{kPatientId});
  EXPECT_EQ(chain.top->copy(missing)->tagsSize(), 0u);
  EXPECT_EQ(chain.top->copy(std::make_shared<Tree::TagIdList>())->tagsSize(), 0u);
}

TEST(TreeCopiesTest, CopiesSequenceItemsDeeply) {
  auto item = layer(nullptr, {{kPatientName, "Doe"}});
  auto sequence = std::make_shared<Tag>(TagInfo(kContentSequence, "", SQ, {1, 1}));
  sequence->addSequenceItem(item);
  auto source = std::make_shared<Tree>();
  source->addTag(sequence);

  auto ids = std::make_shared<Tree::TagIdList>(Tree::TagIdList{kContentSequence});
  for (const auto& copied : {source->mergedCopy(AllLayers), source->copy(ids),
                             source->copy(kContentSequence, kContentSequence)}) {
    auto copiedItem = copied->getTag_rw(kContentSequence)->sequenceItems().at(0);
    ASSERT_NE(copiedItem, nullptr);
    EXPECT_NE(copiedItem, item);
    copiedItem->getTag_rw(kPatientName)->setValue(std::string("Roe"), 0);
    EXPECT_EQ(seen(*item, kPatientName), "Doe");
  }
}

TEST(TreeCopiesTest, AddTagsSharesAndSetTagsCopiesOwnLayer) {
  Chain chain;
  auto shared = layer(nullptr, {});
  shared->addTag(makeTag(kModality, "old"));
  shared->removeTag(kModality);  // a root erases: nothing is hidden
  auto target = layer(chain.root, {});
  target->removeTag(kModality);  // hidden here until a pour un-deletes it
  auto copied = layer(nullptr, {});

  target->addTags(chain.middle);
  shared->addTags(chain.middle);
  copied->setTags(chain.middle);
  for (const auto& tree : {target, shared, copied}) {
    EXPECT_EQ(idsOf(tree->tagIds(OwnLayer)), (std::vector<TagId>{kPatientName}));
    EXPECT_EQ(tree->tags().count(kPatientId), 0u);  // the source's placeholder stays behind
  }

  target->addTags(chain.top);
  EXPECT_EQ(seen(*target, kModality), "MR");  // un-deleted and replaced
  EXPECT_EQ(target->getTag_rw(kRows), chain.top->getTag_rw(kRows));

  chain.middle->getTag_rw(kPatientName)->setValue(std::string("Roe"), 0);
  EXPECT_EQ(seen(*shared, kPatientName), "Roe");
  EXPECT_EQ(seen(*copied, kPatientName), "Doe");
}
