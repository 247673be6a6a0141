#include "quiltra/dataset/Tree.h"

#include "dataset/OrderedInsert.h"
#include "dataset/ParentItems.h"

#include <memory>
#include <string>
#include <utility>

#include <quiltra/core/Exception.h>
#include <quiltra/dataset/Dict.h>
#include <quiltra/element/Tag.h>

namespace Quiltra {

Tree::Tree() = default;

Tree::Tree(std::shared_ptr<const Tree> parent)
    : _parent(std::move(parent)), _dict(_parent ? _parent->getDict() : nullptr) {}

// The weak self-reference of enable_shared_from_this is never copied: a copy is a new object.
Tree::Tree(const Tree& other)
    : Quiltra_Serialization::Serializable(other),
      Quiltra_Serialization::Deserializable(other),
      std::enable_shared_from_this<Tree>(other) {
  *this = other;
}

Tree& Tree::operator=(const Tree& other) {
  if (this == &other) return *this;
  // Everything is taken from other before this Tree's old entries are released: other may
  // live inside one of them (a sequence item), and a failing Tag::copy leaves this Tree as
  // it was.
  TagMap copied;
  for (const auto& entry : other._tags) {
    copied.emplace_hint(copied.end(), entry.first, entry.second->copy());
  }
  auto deleted =
      other._deleted ? std::make_unique<std::set<unsigned int>>(*other._deleted) : nullptr;
  std::shared_ptr<const Tree> parent = other._parent;
  std::shared_ptr<const Dict> dict = other._dict;
  _tags = std::move(copied);
  _deleted = std::move(deleted);
  _parent = std::move(parent);
  _dict = std::move(dict);
  return *this;
}

// The weak self-reference stays with each object, as for copies.
Tree::Tree(Tree&& other) noexcept
    : Quiltra_Serialization::Serializable(other),
      Quiltra_Serialization::Deserializable(other),
      std::enable_shared_from_this<Tree>(other),
      _tags(std::move(other._tags)),
      _deleted(std::move(other._deleted)),
      _parent(std::move(other._parent)),
      _dict(std::move(other._dict)) {
  other._tags.clear();
}

// Everything is taken from other before this Tree's old content goes: other may live inside
// one of its elements.
Tree& Tree::operator=(Tree&& other) noexcept {
  if (this == &other) return *this;
  Tree taken(std::move(other));
  std::swap(_tags, taken._tags);
  std::swap(_deleted, taken._deleted);
  std::swap(_parent, taken._parent);
  std::swap(_dict, taken._dict);
  return *this;  // taken releases the old content
}

// Releasing the parent would run the parent's destructor, which releases its parent, and so
// on: one nested call per layer. Instead, each parent that this Tree alone keeps alive gives
// up its own parent before it goes, so every destructor returns after one step. A parent
// that has other owners is simply released.
Tree::~Tree() {
  std::shared_ptr<const Tree> parent = std::move(_parent);
  while (parent && parent.use_count() == 1) {
    std::shared_ptr<const Tree> next = std::move(parent->_parent);
    parent = std::move(next);  // destroys the old parent, which no longer holds one
  }
}

std::shared_ptr<Tree> Tree::copy() const {
  return std::make_shared<Tree>(*this);
}

bool Tree::hasTag(const TagId& id, TagSelector selector) const {
  return const_tag4tagid(id, selector) != nullptr;
}

bool Tree::hasTag(const std::string& name, TagSelector selector) const {
  if (!_dict) return false;
  try {
    return hasTag(_dict->tagId(name), selector);
  } catch (const Exception&) {
    return false;  // an unknown name is an ordinary negative answer
  }
}

std::shared_ptr<const Tag> Tree::getTag(const TagId& id, TagSelector selector) const {
  return const_tag4tagid(id, selector);
}

std::shared_ptr<const Tag> Tree::getTag(const std::string& name, TagSelector selector) const {
  if (!_dict) return nullptr;
  try {
    const TagId id = _dict->tagId(name);
    if (!hasTag(id, selector)) return nullptr;
    return getTag(id, selector);
  } catch (const Exception&) {
    return nullptr;
  }
}

std::shared_ptr<Tag> Tree::getTag_rw(const TagId& id) {
  return tag4tagid(id);
}

Tree::ConstTagMap Tree::constTags() const {
  return ConstTagMap(_tags.begin(), _tags.end());
}

std::shared_ptr<const Tree> Tree::root() const {
  // A parent pointer already shares ownership; only a Tree without parent needs its own
  // owners, and it never becomes a second, independent one.
  if (!_parent) return weak_from_this().lock();
  const std::shared_ptr<const Tree>* top = &_parent;
  while ((*top)->_parent) top = &(*top)->_parent;
  return *top;
}

void Tree::setDict(std::shared_ptr<const Dict> dict) {
  _dict = std::move(dict);
  for (const auto& entry : _tags) {
    const std::shared_ptr<Tag>& tag = entry.second;
    if (!tag->isSequence()) continue;
    const Tag::Items& items = tag->sequenceItems();
    const ParentItems inherited(*this, entry.first);  // items shared with the parent stay
    for (unsigned int index = 0; index < items.size(); ++index) {
      if (items[index] && !inherited.has(index, items[index].get())) items[index]->setDict(_dict);
    }
  }
}

void Tree::setTag(const TagId& id, std::shared_ptr<const Tag> tag) {
  // Copy first, so that a failing copy leaves the entry and its mark untouched.
  std::shared_ptr<Tag> copied = tag->copy();
  undelete(id);
  insertOrAssignInOrder(_tags, id, std::move(copied));
}

void Tree::setTag(std::shared_ptr<const Tag> tag) {
  const TagId id = tag->info().id();
  setTag(id, std::move(tag));
}

void Tree::addTag(const TagId& id, std::shared_ptr<Tag> tag) {
  undelete(id);
  insertOrAssignInOrder(_tags, id, std::move(tag));
}

void Tree::addTag(std::shared_ptr<Tag> tag) {
  const TagId id = tag->info().id();
  addTag(id, std::move(tag));
}

void Tree::markAsDeleted(const TagId& id) {
  if (!_deleted) _deleted = std::make_unique<std::set<unsigned int>>();
  _deleted->insert(id.rawId());
}

void Tree::removeTag(const TagId& id) {
  if (isDeleted(id)) return;
  std::shared_ptr<const Tag> inherited = _parent ? _parent->getTag(id, AllLayers) : nullptr;
  if (!inherited) {
    _tags.erase(id);
    return;
  }
  // A mark lives only beside an own placeholder; addTag clears marks, so mark afterwards.
  addTag(id, std::make_shared<Tag>(inherited->info()));
  markAsDeleted(id);
}

void Tree::removeTags(std::shared_ptr<TagIdList> ids) {
  for (const TagId& id : *ids) removeTag(id);
}

// Walks up the chain instead of recursing; per layer one map search and one set search.
std::shared_ptr<const Tag> Tree::const_tag4tagid(const TagId& id, TagSelector selector) const {
  if (selector != AllLayers && selector != ExceptRoot && selector != OwnLayer) return nullptr;
  for (const Tree* layer = this; layer != nullptr; layer = layer->_parent.get()) {
    if (selector == ExceptRoot && !layer->_parent) return nullptr;
    const auto found = layer->_tags.find(id);
    const bool deleted = layer->isDeleted(id);
    if (found != layer->_tags.end() && !deleted) return found->second;
    if (selector == OwnLayer || deleted) return nullptr;
  }
  return nullptr;
}

std::shared_ptr<Tag> Tree::tag4tagid(const TagId& id) {
  const auto found = _tags.find(id);
  if (found == _tags.end() || isDeleted(id)) return nullptr;
  return found->second;
}

void Tree::checkForTag(const TagId& id, TagSelector selector) const {
  if (!hasTag(id, selector)) throw Exception("Tree::checkForTag", "tag does not exist");
}

}  // namespace Quiltra
