#include "quiltra/dataset/Tree.h"

#include <memory>
#include <string>

#include <quiltra/core/Exception.h>
#include <quiltra/core/TagInfo.h>
#include <quiltra/core/Vr.h>
#include <quiltra/element/Tag.h>

// Private blocks: in an odd group gggg, the creator element (gggg,00xx), xx from 0x10 to
// 0xFF, names the owner of the 256 elements (gggg,xx00) to (gggg,xxFF). A slot is xx.

namespace Quiltra {

namespace {

constexpr unsigned short kFirstSlot = 0x0010;
constexpr unsigned short kLastSlot = 0x00FF;
constexpr unsigned short kFirstBlockElement = 0x1000;

// Whether the element's text is creator; an element whose text cannot be read matches none.
bool hasCreatorText(const Tag& tag, const std::string& creator) {
  try {
    return tag.toString() == creator;
  } catch (const Exception&) {
    return false;
  }
}

}  // namespace

unsigned short Tree::findPrivateSlot(unsigned short group, const std::string& creator,
                                     bool findFree) const {
  ConstTagMap creators;
  addTagsToMap(creators, AllLayers, TagId(group, kFirstSlot), TagId(group, kLastSlot));
  for (const auto& entry : creators) {
    if (hasCreatorText(*entry.second, creator)) return entry.first.elementId();
  }
  if (!findFree) return 0;
  for (unsigned short slot = kFirstSlot; slot <= kLastSlot; ++slot) {
    if (creators.count(TagId(group, slot)) == 0) return slot;
  }
  return 0;
}

// One search: it answers the creator's slot, or else the lowest free one, which the view
// shows no creator element for.
unsigned short Tree::getPrivateSlot(unsigned short group, const std::string& creator) {
  const unsigned short slot = findPrivateSlot(group, creator, true);
  if (slot == 0) return 0;
  const TagId id(group, slot);
  if (hasTag(id, AllLayers)) return slot;
  auto element = std::make_shared<Tag>(TagInfo(id, "PrivateCreator", LO, {1, 1}));
  element->addValue(creator);
  addTag(id, element);
  return slot;
}

std::string Tree::getPrivateCreator(TagId id) const {
  if (!id.isPrivate()) return "";
  const unsigned short element = id.elementId();
  if (element >= kFirstSlot && element <= kLastSlot) {
    const auto creator = getTag(id, AllLayers);
    if (!creator || creator->numberOfValues() < 1) return "";
    return creator->toString();
  }
  if (element >= kFirstBlockElement) {
    return getPrivateCreator(TagId(id.groupId(), static_cast<unsigned short>(element >> 8)));
  }
  return "";
}

void Tree::removePrivateTags(unsigned short group, unsigned short slot) {
  if (slot < kFirstSlot || slot > kLastSlot) return;
  removeTag(TagId(group, slot));
  const auto first = static_cast<unsigned short>(slot << 8);
  const auto last = static_cast<unsigned short>(first | 0x00FF);
  removeTags(tagIds(TagId(group, first), TagId(group, last), AllLayers));
}

}  // namespace Quiltra
