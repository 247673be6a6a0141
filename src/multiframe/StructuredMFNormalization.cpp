#include "multiframe/GridWalk.h"
#include "quiltra/multiframe/StructuredMF.h"

#include <map>
#include <memory>
#include <vector>

#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>

// Normalisation of the nesting, one level at a time, the items of a level before the level
// itself. For every attribute that some item of the level holds, each non-empty item that
// lacks it receives the level's own tag object (or an empty placeholder when the level has
// none), and empty items receive placeholders. Then, when tags may be shared and every
// non-empty item holds a value equal to the first one's, that first object moves up into
// the level and leaves every item; otherwise the level gives up its own copy. Tag objects
// are moved between items, never copied; only placeholders are made.
//
// Cost per level: one pass over the items' own tags to build the union, then one lookup per
// item and attribute of the union, plus a comparison of values when sharing.

namespace Quiltra {

namespace {

constexpr unsigned short kMetaGroup = 0x0002;

}  // namespace

void StructuredMF::normalizeTagStructure(double tolerance, bool shareEqualTags) {
  if (_tree && hasSlot()) normalizeTagStructure(_tree, tolerance, shareEqualTags);
}

void StructuredMF::normalizeTagStructure(const std::shared_ptr<Tree>& level, double tolerance,
                                         bool shareEqualTags) {
  const auto sequence = level->getTag_rw(_dimensionSequenceId);
  const unsigned int count = GridWalk::itemCount(sequence.get());
  if (count == 0) return;
  // The item pointers are copied so that the walk does not hinge on the sequence element
  // staying as it is while its items change.
  const Tag::Items items = sequence->sequenceItems();

  std::map<TagId, std::shared_ptr<Tag>> known;  // every id found in the items: the first tag
  std::vector<bool> empty(count, false);
  for (unsigned int i = 0; i < count; ++i) {
    if (!items[i]) continue;
    normalizeTagStructure(items[i], tolerance, shareEqualTags);
    const auto ids = items[i]->tagIds(OwnLayer);
    empty[i] = ids->empty();
    for (const TagId& id : *ids) known.emplace(id, items[i]->getTag_rw(id));
  }

  for (const auto& [id, description] : known) {
    if (id.groupId() == kMetaGroup || id == _dimensionSequenceId) continue;
    const auto levelTag = level->getTag_rw(id);
    std::shared_ptr<Tag> reference;
    bool allEqual = true;
    for (unsigned int j = 0; j < count; ++j) {
      if (!items[j]) continue;
      Tree& item = *items[j];
      if (!item.hasTag(id, OwnLayer)) {
        item.addTag(id,
                    levelTag && !empty[j] ? levelTag : std::make_shared<Tag>(description->info()));
      }
      if (!shareEqualTags || empty[j]) continue;
      if (!reference) {
        reference = item.getTag_rw(id);
      } else if (allEqual) {
        allEqual = item.getTag_rw(id)->isEqual(*reference, tolerance);
      }
    }
    if (!shareEqualTags) continue;
    if (allEqual && reference) {
      level->addTag(id, reference);
      for (const auto& item : items) {
        if (item) item->removeTag(id);
      }
    } else if (levelTag) {
      level->removeTag(id);
    }
  }
}

}  // namespace Quiltra
