/*
 * Layers that reach into sequences. A child layer changes one item of a sequence that it
 * sees below it without copying the other items: the step's layer gets an own sequence
 * element that holds the same description and values and shares the item pointers of the
 * element seen below, except at the step's index, where a new child layer over the item
 * below takes the place. Below the first step the same happens inside that item layer, and
 * so on down the path.
 *
 * An own sequence element that already shares items with the element below (made by an
 * earlier call) is reused: only the item on the path is layered, unless that item already
 * is one of this layer's own, which is then reused as it is. An own element that is the
 * very object the parent shows (stored with addTag) is treated as inherited, so the parent
 * is never changed.
 *
 * Every step is checked and every new object made before anything is linked in, with
 * operations that cannot fail: a call that throws leaves the Tree as it was.
 */
#include "dataset/ParentItems.h"
#include "quiltra/dataset/Tree.h"

#include <memory>
#include <utility>
#include <vector>

#include <quiltra/core/Exception.h>
#include <quiltra/element/Tag.h>

namespace Quiltra {

namespace {

const char* const kOperation = "Tree::layerSequenceItem";

// The sequence element that layer shows for step, after the checks of the step.
std::shared_ptr<const Tag> checkedSequence(const Tree& layer, const Tree::ItemStep& step) {
  std::shared_ptr<const Tag> sequence = layer.getTag(step.sequence, AllLayers);
  if (!sequence) throw Exception(kOperation, "tag does not exist");
  if (!sequence->isSequence()) throw Exception(kOperation, "illegal type");
  if (step.index >= sequence->numberOfSequenceItems()) {
    throw Exception(kOperation, "index out of range");
  }
  if (!sequence->sequenceItems()[step.index]) throw Exception(kOperation, "null sequence item");
  return sequence;
}

// A new element with the description and values of element that shares its items.
std::shared_ptr<Tag> sharingItems(const Tag& element) {
  auto shared = std::make_shared<Tag>(element.info());
  for (unsigned int index = 0; index < element.numberOfValues(); ++index) {
    shared->addValue() = element.getValue(index);
  }
  shared->sequenceItems() = element.sequenceItems();
  return shared;
}

}  // namespace

std::shared_ptr<Tree> Tree::layerSequenceItem(const ItemPath& path) {
  if (path.empty()) throw Exception(kOperation, "empty path");
  // One change per step that needs one: a new element for layer (or none, when layer's own
  // element is kept) and the new item layer for its slot.
  struct Change {
    Tree* layer;
    TagMap::node_type element;
    Tag* sequence;
    unsigned int index;
    std::shared_ptr<Tree> item;
  };
  std::vector<Change> changes;
  changes.reserve(path.size());
  Tree* layer = this;
  std::shared_ptr<Tree> item;
  for (const ItemStep& step : path) {
    const std::shared_ptr<const Tag> seen = checkedSequence(*layer, step);
    const ParentItems below(*layer, step.sequence);
    const std::shared_ptr<Tag> own = layer->tag4tagid(step.sequence);
    if (own && own.get() != below.element()) {
      item = own->sequenceItems()[step.index];
      if (below.has(step.index, item.get())) {
        item = std::make_shared<Tree>(std::move(item));
        changes.push_back({layer, {}, own.get(), step.index, item});
      }
    } else {
      TagMap made;
      const auto entry = made.emplace(step.sequence, sharingItems(*seen)).first;
      item = std::make_shared<Tree>(seen->sequenceItems()[step.index]);
      Tag* sequence = entry->second.get();
      changes.push_back({layer, made.extract(entry), sequence, step.index, item});
    }
    layer = item.get();
  }
  for (Change& change : changes) {
    change.sequence->sequenceItems()[change.index] = std::move(change.item);
    if (change.element.empty()) continue;
    const auto found = change.layer->_tags.find(change.element.key());
    if (found == change.layer->_tags.end()) {
      change.layer->_tags.insert(std::move(change.element));
    } else {
      found->second = std::move(change.element.mapped());
    }
  }
  return item;
}

}  // namespace Quiltra
