#include "quiltra/dataset/Tree.h"

#include <vector>

#include <quiltra/element/Tag.h>

// The walk over a view. For each id, the upper-most walked layer that holds an entry for it
// decides: its element is shown, or, when that layer marks the id deleted, the id is hidden
// together with every deeper entry. This is what the collectors of the listings end up with
// after letting each layer override the ones below it, reached here without building a map.

namespace Quiltra {

namespace {

// One layer's position in the merge.
struct LayerCursor {
  Tree::TagMap::const_iterator at;
  Tree::TagMap::const_iterator end;
  const Tree* layer;
};

}  // namespace

void Tree::forEachTag(TagSelector selector, const TagVisitor& visit) const {
  if (selector == OwnLayer || (!_parent && selector == AllLayers)) {
    for (const auto& entry : _tags) {
      if (entry.second && !isDeleted(entry.first)) {
        visit(entry.first, *entry.second);
      }
    }
    return;
  }
  const std::vector<const Tree*> layers = collectedLayers(selector);
  std::vector<LayerCursor> cursors;
  cursors.reserve(layers.size());
  // Upper-most first, so that the first cursor showing the smallest id is the one that decides.
  for (auto layer = layers.rbegin(); layer != layers.rend(); ++layer) {
    cursors.push_back({(*layer)->_tags.begin(), (*layer)->_tags.end(), *layer});
  }
  for (;;) {
    const LayerCursor* deciding = nullptr;
    for (const LayerCursor& cursor : cursors) {
      if (cursor.at != cursor.end && (!deciding || cursor.at->first < deciding->at->first)) {
        deciding = &cursor;
      }
    }
    if (!deciding) return;
    const TagId id = deciding->at->first;
    const std::shared_ptr<Tag>& tag = deciding->at->second;
    if (tag && !deciding->layer->isDeleted(id)) visit(id, *tag);
    for (LayerCursor& cursor : cursors) {
      if (cursor.at != cursor.end && cursor.at->first == id) ++cursor.at;
    }
  }
}

}  // namespace Quiltra
