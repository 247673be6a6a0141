#include "quiltra/multiframe/StructuredMF.h"

#include "multiframe/GridWalk.h"

#include <memory>
#include <string>
#include <utility>

#include <quiltra/core/TagInfo.h>
#include <quiltra/core/Vr.h>
#include <quiltra/dataset/Dict.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>

// The grid model: the private slot, the dimensions attribute, the nesting and the walk to a
// position item. With slot ss the view owns (0041,00ss) and (0041,ss00) to (0041,ssFF):
//   (0041,00ss) LO  the creator text
//   (0041,ss01) US  the extent, dimension 0 first
//   (0041,ss02) SQ  e[n-1] items, each with its own (0041,ss02) of e[n-2] items, ...;
//                   the items of the innermost level are the position items
//   (0041,ss03) US  a frame index

namespace Quiltra {

using GridWalk::kGroup;

namespace {

// The extent of the three-number constructor: x, then y and z as long as a later entry is
// still above 1, so that trailing dimensions of 1 are dropped.
std::vector<unsigned int> extentFromThree(unsigned int x, unsigned int y, unsigned int z) {
  std::vector<unsigned int> extent;
  if (x == 0) return extent;
  extent.push_back(x);
  if (y > 1 || (y == 1 && z > 1)) {
    extent.push_back(y);
    if (z > 1) extent.push_back(z);
  }
  return extent;
}

TagId blockElement(unsigned short slot, unsigned short offset) {
  return TagId(kGroup, static_cast<unsigned short>(slot << 8 | offset));
}

}  // namespace

StructuredMF::StructuredMF(std::shared_ptr<Tree> tree) : _tree(tree), _constTree(std::move(tree)) {
  readGridExtent();
}

StructuredMF::StructuredMF(std::shared_ptr<const Tree> tree) : _constTree(std::move(tree)) {
  readGridExtent();
}

StructuredMF::StructuredMF(std::shared_ptr<Tree> tree, unsigned int x, unsigned int y,
                           unsigned int z)
    : StructuredMF(std::move(tree), extentFromThree(x, y, z)) {}

StructuredMF::StructuredMF(std::shared_ptr<Tree> tree, const std::vector<unsigned int>& extent)
    : _tree(tree), _constTree(std::move(tree)), _gridExtent(extent) {
  // Without a slot the ids would point into group 0000: keep the data set as it is.
  if (!initPrivateTagIds(true)) {
    _gridExtent.clear();
    return;
  }
  setDimensionsTag();
}

StructuredMF::~StructuredMF() = default;

unsigned int StructuredMF::getNumberOfFrames() const noexcept {
  if (_gridExtent.empty()) return 0;
  unsigned int product = 1;
  for (unsigned int extent : _gridExtent) product *= extent;
  return product;
}

bool StructuredMF::frameExists(const std::vector<unsigned int>& position) const {
  const auto item = gridPositionTagTree(position);
  return item && item->tagsSize() > 0;
}

std::vector<unsigned int> StructuredMF::indexVectorFromIndexes(unsigned int i, unsigned int j,
                                                               unsigned int k) const {
  std::vector<unsigned int> position(_gridExtent.size(), 0);
  const unsigned int indexes[] = {i, j, k};
  for (std::size_t d = 0; d < position.size() && d < 3; ++d) position[d] = indexes[d];
  return position;
}

void StructuredMF::readGridExtent() {
  if (!initPrivateTagIds(false)) return;
  const auto dimensions = _constTree->getTag(_dimensionsId, AllLayers);
  if (!dimensions) return;
  for (unsigned int i = 0; i < dimensions->numberOfValues(); ++i) {
    _gridExtent.push_back(dimensions->toUInt(i));
  }
}

bool StructuredMF::initPrivateTagIds(bool createMissing) {
  if (!_constTree) return false;
  const unsigned short slot = _constTree->findPrivateSlot(kGroup, privateCreator, createMissing);
  if (slot == 0) return false;
  _creatorId = TagId(kGroup, slot);
  _blockId = blockElement(slot, 0x00);
  _dimensionsId = blockElement(slot, 0x01);
  _dimensionSequenceId = blockElement(slot, 0x02);
  _frameIndexId = blockElement(slot, 0x03);
  if (!createMissing || !_tree) return true;
  clearPrivateTags();
  if (!_tree->hasTag(_creatorId, AllLayers)) {
    const auto dict = _tree->getDict();
    const TagInfo info = dict ? dict->tagInfo(_creatorId) : defaultCreatorTagInfo();
    auto creator = std::make_shared<Tag>(info);
    creator->addValue(std::string(privateCreator));
    _tree->addTag(info.id(), creator);
  }
  return true;
}

void StructuredMF::clearPrivateTags() {
  if (_tree) _tree->removePrivateTags(_creatorId.groupId(), _creatorId.elementId());
}

bool StructuredMF::isPrivateTagId(const TagId& id) const noexcept {
  return GridWalk::inBlock(id, _creatorId.elementId());
}

void StructuredMF::setDimensionsTag() {
  auto dimensions = std::make_shared<Tag>(dimensionsTagInfo());
  for (unsigned int extent : _gridExtent) dimensions->addValue(extent);
  if (_tree) _tree->addTag(_dimensionsId, dimensions);
}

TagInfo StructuredMF::dimensionsTagInfo() const {
  return TagInfo(_dimensionsId, "TavikStructuredMFDimensions", US, {1, 10});
}

TagInfo StructuredMF::dimensionGroupTagInfo() const {
  return TagInfo(_dimensionSequenceId, "TavikStructuredMFDimensionSequence", SQ, {1, 65535});
}

TagInfo StructuredMF::frameIndexTagInfo() const {
  return TagInfo(_frameIndexId, "TavikStructuredMFFrameIndex", US, {0, 1});
}

TagInfo StructuredMF::defaultCreatorTagInfo() const {
  return TagInfo(_creatorId, "PrivateCreator", LO, {1, 1});
}

// Depth first, items in index order. An extent above the signed 32-bit range counts as
// not positive and adds nothing, like 0.
void StructuredMF::createDimensionSubtree(std::shared_ptr<Tag> sequence, int level) const {
  const int count = static_cast<int>(_gridExtent[static_cast<std::size_t>(level)]);
  for (int i = 0; i < count; ++i) {
    auto item = std::make_shared<Tree>();
    if (level > 0) {
      auto nested = std::make_shared<Tag>(dimensionGroupTagInfo());
      createDimensionSubtree(nested, level - 1);
      item->addTag(_dimensionSequenceId, nested);
    }
    sequence->addSequenceItem(item);
  }
}

std::shared_ptr<Tree> StructuredMF::gridPositionTagTree(const std::vector<unsigned int>& position) {
  if (!_tree || _gridExtent.empty() || !hasSlot()) return nullptr;
  auto sequence = _tree->getTag_rw(_dimensionSequenceId);
  if (!sequence) {
    sequence = std::make_shared<Tag>(dimensionGroupTagInfo());
    createDimensionSubtree(sequence, static_cast<int>(_gridExtent.size()) - 1);
    _tree->addTag(_dimensionSequenceId, sequence);
  }
  return GridWalk::positionItem<std::shared_ptr<Tree>>(
      sequence.get(), _gridExtent.size(), position,
      [this](Tree& item) { return item.getTag_rw(_dimensionSequenceId); });
}

std::shared_ptr<const Tree> StructuredMF::gridPositionTagTree(
    const std::vector<unsigned int>& position) const {
  if (!_constTree || _gridExtent.empty() || !hasSlot()) return nullptr;
  const auto sequence = _constTree->getTag(_dimensionSequenceId, AllLayers);
  return GridWalk::positionItem<std::shared_ptr<const Tree>>(
      sequence.get(), _gridExtent.size(), position,
      [this](const Tree& item) { return item.getTag(_dimensionSequenceId, AllLayers); });
}

}  // namespace Quiltra
