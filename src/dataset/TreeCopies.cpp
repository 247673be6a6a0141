#include "quiltra/dataset/Tree.h"

#include "dataset/OrderedInsert.h"

#include <memory>
#include <set>
#include <vector>

#include <quiltra/element/Tag.h>

// Listings, copies and merging. The collectors visit the parents first and let every layer
// override or remove (deletion marks) what lies below it, so a target ends up holding the
// view of the selector restricted to the range. A deleted id is met only through its own
// placeholder entry, which is why the walks need only the own map.

namespace Quiltra {

namespace {

// What a collector does with a layer before walking that layer's own map.
enum class Visit { Nothing, OwnOnly, ParentFirst };

Visit visitFor(TagSelector selector, bool hasParent) {
  switch (selector) {
    case AllLayers:
      return hasParent ? Visit::ParentFirst : Visit::OwnOnly;
    case ExceptRoot:
      return hasParent ? Visit::ParentFirst : Visit::Nothing;  // a root adds nothing
    case OwnLayer:
      return Visit::OwnOnly;
    default:
      return Visit::Nothing;
  }
}

// Calls visit(entry) for the entries of tags with from <= id <= to, ascending.
template <class Visitor>
void forEachInRange(const Tree::TagMap& tags, const TagId& from, const TagId& to, Visitor&& visit) {
  for (auto it = tags.lower_bound(from); it != tags.end() && it->first <= to; ++it) visit(*it);
}

// The whole id range, (0000,0000) to (ffff,ffff), both included.
constexpr unsigned int kFirstRawId = 0u;
constexpr unsigned int kLastRawId = 0xFFFFFFFFu;

// Stores a deep copy of every element of tags in target. Taking the map by reference keeps
// a temporary listing alive for the whole walk.
void setEach(Tree& target, const Tree::ConstTagMap& tags) {
  for (const auto& entry : tags) target.setTag(entry.first, entry.second);
}

}  // namespace

std::shared_ptr<Tree::TagIdList> Tree::tagIds(TagSelector selector) const {
  return tagIds(TagId(kFirstRawId), TagId(kLastRawId), selector);
}

// Both branches produce ids in ascending order already, so no sort is needed.
std::shared_ptr<Tree::TagIdList> Tree::tagIds(const TagId& from, const TagId& to,
                                              TagSelector selector) const {
  auto ids = std::make_shared<TagIdList>();
  if (selector == OwnLayer) {
    forEachInRange(_tags, from, to, [&](const TagMap::value_type& entry) {
      if (!isDeleted(entry.first)) ids->push_back(entry.first);
    });
    return ids;
  }
  std::set<unsigned int> collected;
  addTagsToSet(collected, selector, from, to);
  ids->reserve(collected.size());
  for (unsigned int raw : collected) ids->emplace_back(raw);
  return ids;
}

std::shared_ptr<Tree::ConstTagMap> Tree::getTags(TagSelector selector) const {
  return getTags(TagId(kFirstRawId), TagId(kLastRawId), selector);
}

std::shared_ptr<Tree::ConstTagMap> Tree::getTags(const TagId& from, const TagId& to,
                                                 TagSelector selector) const {
  auto found = std::make_shared<ConstTagMap>();
  addTagsToMap(*found, selector, from, to);
  return found;
}

// The view's map holds exactly the elements that tagIds(selector) and getTag would give.
std::shared_ptr<Tree> Tree::mergedCopy(TagSelector selector) const {
  auto merged = std::make_shared<Tree>();
  setEach(*merged, *getTags(selector));
  return merged;
}

std::shared_ptr<Tree> Tree::copy(const TagId& from, const TagId& to) const {
  auto copied = std::make_shared<Tree>();
  setEach(*copied, *getTags(from, to, AllLayers));
  return copied;
}

// One layered lookup per distinct wanted id, ascending; ids the view lacks are skipped.
std::shared_ptr<Tree> Tree::copy(std::shared_ptr<TagIdList> ids) const {
  std::set<unsigned int> wanted;
  for (const TagId& id : *ids) wanted.insert(id.rawId());
  auto copied = std::make_shared<Tree>();
  for (unsigned int raw : wanted) {
    const TagId id(raw);
    std::shared_ptr<const Tag> tag = const_tag4tagid(id, AllLayers);
    if (tag) copied->setTag(id, tag);
  }
  return copied;
}

void Tree::addTags(std::shared_ptr<Tree> other) {
  for (const auto& entry : other->_tags) {
    if (!other->isDeleted(entry.first)) addTag(entry.first, entry.second);
  }
}

// getTags(OwnLayer) leaves out the ids marked deleted in other.
void Tree::setTags(std::shared_ptr<const Tree> other) {
  setEach(*this, *other->getTags(OwnLayer));
}

// The layers a collector walks, root-most first; a loop, so a chain of any length fits the
// stack. Costs one pointer per layer.
std::vector<const Tree*> Tree::collectedLayers(TagSelector selector) const {
  std::vector<const Tree*> layers;
  for (const Tree* layer = this; layer != nullptr; layer = layer->_parent.get()) {
    const Visit visit = visitFor(selector, layer->hasParent());
    if (visit == Visit::Nothing) break;
    layers.push_back(layer);
    if (visit == Visit::OwnOnly) break;
  }
  return {layers.rbegin(), layers.rend()};
}

template <class Target, class Keep, class Drop>
void Tree::collect(Target& target, TagSelector selector, const TagId& from, const TagId& to,
                   Keep&& keep, Drop&& drop) const {
  for (const Tree* layer : collectedLayers(selector)) {
    forEachInRange(layer->_tags, from, to, [&](const TagMap::value_type& entry) {
      if (layer->isDeleted(entry.first)) {
        drop(target, entry);
      } else {
        keep(target, entry);
      }
    });
  }
}

void Tree::addTagsToSet(std::set<unsigned int>& target, TagSelector selector, const TagId& from,
                        const TagId& to) const {
  collect(
      target, selector, from, to,
      [](std::set<unsigned int>& ids, const TagMap::value_type& entry) {
        ids.insert(entry.first.rawId());
      },
      [](std::set<unsigned int>& ids, const TagMap::value_type& entry) {
        ids.erase(entry.first.rawId());
      });
}

void Tree::addTagsToMap(ConstTagMap& target, TagSelector selector, const TagId& from,
                        const TagId& to) const {
  collect(
      target, selector, from, to,
      [](ConstTagMap& tags, const TagMap::value_type& entry) {
        insertOrAssignInOrder(tags, entry.first, entry.second);
      },
      [](ConstTagMap& tags, const TagMap::value_type& entry) { tags.erase(entry.first); });
}

}  // namespace Quiltra
