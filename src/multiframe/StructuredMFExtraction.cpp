#include "multiframe/GridWalk.h"
#include "quiltra/multiframe/StructuredMF.h"

#include <memory>
#include <vector>

#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>

// Extraction of one position's data set and of the shared tags, and the search for empty
// positions. Extraction first gathers the wanted tags as shared pointers (the innermost
// occurrence replacing outer ones) and then deep-copies each wanted tag once, so nothing is
// copied that the result does not keep.

namespace Quiltra {

namespace {

// Whether every tag the data set shows is empty; true for a data set without tags.
bool holdsNoData(const Tree& item) {
  bool empty = true;
  item.forEachTag(AllLayers, [&empty](const TagId&, const Tag& tag) {
    if (!tag.isEmpty()) empty = false;
  });
  return empty;
}

// Advances position like an odometer, dimension 0 fastest; false after the last position.
bool nextPosition(std::vector<unsigned int>& position, const std::vector<unsigned int>& extent) {
  for (std::size_t d = 0; d < position.size(); ++d) {
    if (++position[d] < extent[d]) return true;
    position[d] = 0;
  }
  return false;
}

}  // namespace

// Entries beyond the grid dimension are walked first, as indexes of the outermost sequence.
std::shared_ptr<Tree> StructuredMF::extractTagTreeForGridPosition(
    std::vector<unsigned int> position, ExtractMode mode) const {
  if (!_constTree) return std::make_shared<Tree>();
  Tree::ConstTagMap wanted;
  auto keep = [&](const Tree& from, bool replace) {
    const auto tags = from.getTags(AllLayers);
    for (const auto& entry : *tags) {
      if (isPrivateTagId(entry.first)) continue;
      if (replace) wanted[entry.first] = entry.second;
      if (!replace) wanted.emplace(entry.first, entry.second);
    }
  };
  if (hasSlot()) {
    if (position.size() < _gridExtent.size()) position.resize(_gridExtent.size(), 0);
    const auto reached = GridWalk::reachedItems<std::shared_ptr<const Tree>>(
        _constTree->getTag(_dimensionSequenceId, AllLayers), position,
        [this](const Tree& item) { return item.getTag(_dimensionSequenceId, AllLayers); });
    for (const auto& item : reached) keep(*item, true);
  }
  if (mode == MergedWithShared) keep(*_constTree, false);

  std::shared_ptr<Tree> result;
  if (mode == SharedAsParent) {
    result = std::make_shared<Tree>(_constTree);
    result->removePrivateTags(_creatorId.groupId(), _creatorId.elementId());
  } else {
    result = std::make_shared<Tree>();
    result->setDict(_constTree->getDict());
  }
  for (const auto& entry : wanted) result->setTag(entry.first, entry.second);
  return result;
}

std::shared_ptr<Tree> StructuredMF::extractTagTreeForGridPosition(unsigned int i, unsigned int j,
                                                                  unsigned int k,
                                                                  ExtractMode mode) const {
  return extractTagTreeForGridPosition(indexVectorFromIndexes(i, j, k), mode);
}

std::shared_ptr<Tree> StructuredMF::extractSharedTagTree() const {
  auto shared = std::make_shared<Tree>();
  if (!_constTree) return shared;
  shared->setDict(_constTree->getDict());
  // addTag of a copy stores what setTag would, without a listing of shared pointers.
  _constTree->forEachTag(AllLayers, [this, &shared](const TagId& id, const Tag& tag) {
    if (!isPrivateTagId(id)) shared->addTag(id, tag.copy());
  });
  return shared;
}

// A position whose item cannot be reached (no nesting yet, or a nesting that does not
// match the extent) holds no data and is listed as empty.
void StructuredMF::getEmptyFrames(std::vector<std::vector<unsigned int>>& positions) const {
  positions.clear();
  if (_gridExtent.empty()) return;
  for (unsigned int extent : _gridExtent) {
    if (extent == 0) return;
  }
  std::vector<unsigned int> position(_gridExtent.size(), 0);
  do {
    const auto item = gridPositionTagTree(position);
    if (!item || holdsNoData(*item)) positions.push_back(position);
  } while (nextPosition(position, _gridExtent));
}

}  // namespace Quiltra
