#include "multiframe/GridWalk.h"
#include "quiltra/multiframe/StructuredMF.h"

#include <memory>
#include <utility>
#include <vector>

#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>

// Shared tags, the tags of one position and the frame index. Reads search the items from
// the position item outward, then the top level; writes go into the position item. Tags
// are stored and handed out as the caller's and the data set's own objects, never copied.

namespace Quiltra {

namespace {

const TagId kSharedFunctionalGroups(0x5200, 0x9229);
const TagId kPerFrameFunctionalGroups(0x5200, 0x9230);

// Calls store(id, tag) for every own tag of tree, in ascending id order.
template <class Store>
void forEachOwnTag(Tree& tree, Store&& store) {
  const auto ids = tree.tagIds(OwnLayer);  // kept alive for the whole loop
  for (const TagId& id : *ids) store(id, tree.getTag_rw(id));
}

// The innermost hit among the reached items, else the top level's; find(tree) looks up the
// wanted id in one data set.
template <class TagPtr, class TreePtr, class Find>
TagPtr innermostTag(const std::vector<TreePtr>& reached, const TreePtr& top, Find&& find) {
  for (auto item = reached.rbegin(); item != reached.rend(); ++item) {
    TagPtr found = find(**item);
    if (found) return found;
  }
  return find(*top);
}

}  // namespace

std::shared_ptr<const Tag> StructuredMF::sharedTag(const TagId& id) const {
  return _constTree ? _constTree->getTag(id, AllLayers) : nullptr;
}

std::shared_ptr<Tag> StructuredMF::sharedTag_rw(const TagId& id) {
  return _tree ? _tree->getTag_rw(id) : nullptr;
}

// Ascending order with replacing stores: a macro attribute replaces a top-level one of a
// lower id stored before and is replaced by one of a higher id stored after.
void StructuredMF::setSharedTags(std::shared_ptr<Tree> source, bool unpackFunctionalGroups) {
  if (!_tree || !source) return;
  forEachOwnTag(*source, [&](const TagId& id, const std::shared_ptr<Tag>& tag) {
    if (unpackFunctionalGroups && id == kSharedFunctionalGroups) {
      const auto groups = GridWalk::itemAt(tag.get(), 0);
      if (!groups) return;
      forEachOwnTag(*groups, [&](const TagId&, const std::shared_ptr<Tag>& macro) {
        if (!macro->isSequence()) return;
        const auto first = GridWalk::itemAt(macro.get(), 0);
        if (first) _tree->addTags(first);
      });
      return;
    }
    if (unpackFunctionalGroups && id == kPerFrameFunctionalGroups) return;
    if (isPrivateTagId(id)) return;
    _tree->addTag(id, tag);
  });
}

std::shared_ptr<const Tag> StructuredMF::tagForGridPosition(
    const TagId& id, std::vector<unsigned int> position) const {
  if (!_constTree) return nullptr;
  auto find = [&id](const Tree& tree) { return tree.getTag(id, AllLayers); };
  if (!hasSlot()) return find(*_constTree);
  position.resize(_gridExtent.size(), 0);
  const auto reached = GridWalk::reachedItems<std::shared_ptr<const Tree>>(
      _constTree->getTag(_dimensionSequenceId, AllLayers), position,
      [this](const Tree& item) { return item.getTag(_dimensionSequenceId, AllLayers); });
  return innermostTag<std::shared_ptr<const Tag>>(reached, _constTree, find);
}

std::shared_ptr<const Tag> StructuredMF::tagForGridPosition(const TagId& id, unsigned int i,
                                                            unsigned int j, unsigned int k) const {
  return tagForGridPosition(id, indexVectorFromIndexes(i, j, k));
}

std::shared_ptr<Tag> StructuredMF::tagForGridPosition_rw(const TagId& id,
                                                         std::vector<unsigned int> position) {
  if (!_tree) return nullptr;
  auto find = [&id](Tree& tree) { return tree.getTag_rw(id); };
  if (!hasSlot()) return find(*_tree);
  position.resize(_gridExtent.size(), 0);
  const auto reached = GridWalk::reachedItems<std::shared_ptr<Tree>>(
      _tree->getTag_rw(_dimensionSequenceId), position,
      [this](Tree& item) { return item.getTag_rw(_dimensionSequenceId); });
  return innermostTag<std::shared_ptr<Tag>>(reached, _tree, find);
}

std::shared_ptr<Tag> StructuredMF::tagForGridPosition_rw(const TagId& id, unsigned int i,
                                                         unsigned int j, unsigned int k) {
  return tagForGridPosition_rw(id, indexVectorFromIndexes(i, j, k));
}

void StructuredMF::setTagForGridPosition(std::shared_ptr<Tag> tag,
                                         const std::vector<unsigned int>& position) {
  if (!tag) return;
  const auto item = gridPositionTagTree(position);
  if (item) item->addTag(std::move(tag));
}

void StructuredMF::setTagForGridPosition(std::shared_ptr<Tag> tag, unsigned int i, unsigned int j,
                                         unsigned int k) {
  setTagForGridPosition(std::move(tag), indexVectorFromIndexes(i, j, k));
}

// Only the source's own block of this creator is left out, whatever slot the view uses.
// The position item is looked up once, at the first tag to store.
void StructuredMF::setGridPositionSpecificTags(std::shared_ptr<Tree> source,
                                               const std::vector<unsigned int>& position) {
  if (!source) return;
  const unsigned short slot = source->findPrivateSlot(GridWalk::kGroup, privateCreator, false);
  std::shared_ptr<Tree> item;
  bool lookedUp = false;
  forEachOwnTag(*source, [&](const TagId& id, const std::shared_ptr<Tag>& tag) {
    if (GridWalk::inBlock(id, slot)) return;
    if (!lookedUp) item = gridPositionTagTree(position), lookedUp = true;
    if (item) item->addTag(tag->info().id(), tag);
  });
}

void StructuredMF::setGridPositionSpecificTags(std::shared_ptr<Tree> source, unsigned int i,
                                               unsigned int j, unsigned int k) {
  setGridPositionSpecificTags(std::move(source), indexVectorFromIndexes(i, j, k));
}

int StructuredMF::frameIndexForGridPosition(const std::vector<unsigned int>& position) const {
  if (!hasSlot()) return -1;
  const auto frameIndex = tagForGridPosition(_frameIndexId, position);
  if (!frameIndex || frameIndex->numberOfValues() < 1) return -1;
  return static_cast<int>(frameIndex->toUInt(0));
}

int StructuredMF::frameIndexForGridPosition(unsigned int i, unsigned int j, unsigned int k) const {
  return frameIndexForGridPosition(indexVectorFromIndexes(i, j, k));
}

void StructuredMF::setFrameIndexForGridPosition(unsigned int frameIndex,
                                                const std::vector<unsigned int>& position) {
  auto tag = std::make_shared<Tag>(frameIndexTagInfo());
  tag->addValue(frameIndex);
  setTagForGridPosition(tag, position);
}

void StructuredMF::setFrameIndexForGridPosition(unsigned int frameIndex, unsigned int i,
                                                unsigned int j, unsigned int k) {
  setFrameIndexForGridPosition(frameIndex, indexVectorFromIndexes(i, j, k));
}

}  // namespace Quiltra
