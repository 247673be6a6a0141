#include "NestingGuard.h"

#include <memory>

#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>

// Measures what the writers would write, without writing. The binary form writes the
// AllLayers view of every Tree, so an element counts when it is the one that view shows;
// the text form writes the own layer as stored, placeholders included. Null items are left
// to the writers, which refuse them.

namespace Quiltra {

bool NestingCheck::tooDeep(const Tag& tag, Form form) {
  return itemsTooDeep(tag, form, kMaxNestingDepth);
}

bool NestingCheck::tooDeep(const Tree& tree, Form form) {
  return elementsTooDeep(tree, form, kMaxNestingDepth);
}

// levelsLeft: how many more item levels may follow below tag.
bool NestingCheck::itemsTooDeep(const Tag& tag, Form form, std::size_t levelsLeft) {
  for (const std::shared_ptr<Tree>& item : tag.itemList()) {
    if (!item) continue;
    if (levelsLeft == 0) return true;
    if (elementsTooDeep(*item, form, levelsLeft - 1)) return true;
  }
  return false;
}

// Only elements with items matter; for those the binary form asks the view whether the
// entry is the element it shows (one lookup per layer visited).
bool NestingCheck::elementsTooDeep(const Tree& tree, Form form, std::size_t levelsLeft) {
  for (const Tree* layer = &tree; layer != nullptr; layer = layer->_parent.get()) {
    for (const auto& [id, tag] : layer->_tags) {
      if (tag->numberOfSequenceItems() == 0) continue;
      if (form == Form::Binary && tree.const_tag4tagid(id, AllLayers) != tag) continue;
      if (itemsTooDeep(*tag, form, levelsLeft)) return true;
    }
    if (form == Form::Text) break;
  }
  return false;
}

}  // namespace Quiltra
