#ifndef QUILTRA_SRC_MULTIFRAME_GRIDWALK_H_
#define QUILTRA_SRC_MULTIFRAME_GRIDWALK_H_

#include <memory>
#include <vector>

#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>

// Walks through the nested dimension sequences of a structured multi-frame grid. Each
// step costs one element lookup in one item, so reaching a position costs one lookup per
// dimension whatever the number of positions. A dimension element that is not a sequence
// counts as one without items, and a null item slot as a missing item.

namespace Quiltra {
namespace GridWalk {

/// The private group that holds the grid.
constexpr unsigned short kGroup = 0x0041;

/// Whether id belongs to the block of slot in kGroup: its creator element (0041,00ss) or
/// one of (0041,ss00) to (0041,ssFF). Slot 0 means no block, to which nothing belongs.
inline bool inBlock(const TagId& id, unsigned short slot) noexcept {
  if (slot == 0) return false;
  const unsigned int block = static_cast<unsigned int>(kGroup) << 16 | slot << 8;
  return id == TagId(kGroup, slot) || (id.rawId() & ~0xFFu) == block;
}

inline unsigned int itemCount(const Tag* sequence) noexcept {
  return sequence != nullptr && sequence->isSequence() ? sequence->numberOfSequenceItems() : 0;
}

/// Item index of sequence; empty when there is no such item.
inline std::shared_ptr<Tree> itemAt(const Tag* sequence, unsigned int index) {
  if (index >= itemCount(sequence)) return nullptr;
  return sequence->sequenceItems()[index];
}

/// Entry d of position, 0 when the position is shorter.
inline unsigned int indexAt(const std::vector<unsigned int>& position, std::size_t d) noexcept {
  return d < position.size() ? position[d] : 0;
}

/// The position item reached from sequence, the top-level dimension sequence, through
/// dimensions - 1 down to 0; empty when an index lies beyond a level's items or a nested
/// sequence or item is missing. findSequence(item) gives an item's own dimension sequence.
template <class TreePtr, class FindSequence>
TreePtr positionItem(const Tag* sequence, std::size_t dimensions,
                     const std::vector<unsigned int>& position, FindSequence&& findSequence) {
  for (std::size_t d = dimensions; d-- > 0;) {
    TreePtr item = itemAt(sequence, indexAt(position, d));
    if (!item || d == 0) return item;
    const auto nested = findSequence(*item);
    sequence = nested.get();
  }
  return nullptr;
}

/// The items a tag lookup passes through, outermost first, walking the entries of position
/// from the last down to 0. An index beyond a level's items records nothing and is read
/// against the same sequence as the next index; the walk ends at an item without a nested
/// sequence and at a null item.
template <class TreePtr, class TagPtr, class FindSequence>
std::vector<TreePtr> reachedItems(TagPtr sequence, const std::vector<unsigned int>& position,
                                  FindSequence&& findSequence) {
  std::vector<TreePtr> reached;
  for (std::size_t d = position.size(); d-- > 0 && sequence;) {
    if (position[d] >= itemCount(sequence.get())) continue;
    TreePtr item = itemAt(sequence.get(), position[d]);
    if (!item) break;
    reached.push_back(item);
    if (d > 0) sequence = findSequence(*item);
  }
  return reached;
}

}  // namespace GridWalk
}  // namespace Quiltra

#endif  // QUILTRA_SRC_MULTIFRAME_GRIDWALK_H_
