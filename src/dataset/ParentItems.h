#ifndef QUILTRA_SRC_DATASET_PARENTITEMS_H_
#define QUILTRA_SRC_DATASET_PARENTITEMS_H_

#include <memory>

#include <quiltra/core/TagId.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>

// A layer's own sequence element may share items with the element that its parent shows
// under the same id (layerSequenceItem makes such elements). Those items belong to the
// parent: the operations that change the own layer in place pass them over, so that the
// parent stays untouched. Finding the parent's element costs one layered lookup.

namespace Quiltra {

class ParentItems {
 public:
  /// The element that layer's parent shows for id, when it is a sequence.
  ParentItems(const Tree& layer, const TagId& id) {
    if (!layer.hasParent()) return;
    std::shared_ptr<const Tag> element = layer.parent()->getTag(id, AllLayers);
    if (element && element->isSequence()) _element = std::move(element);
  }

  /// The parent's sequence element, or null.
  const Tag* element() const noexcept { return _element.get(); }

  /// Whether item is the very item that the parent's element holds at index.
  bool has(unsigned int index, const Tree* item) const {
    if (!_element || index >= _element->numberOfSequenceItems()) return false;
    return _element->sequenceItems()[index].get() == item;
  }

 private:
  std::shared_ptr<const Tag> _element;
};

}  // namespace Quiltra

#endif  // QUILTRA_SRC_DATASET_PARENTITEMS_H_
