#ifndef QUILTRA_DATASET_TREE_H_
#define QUILTRA_DATASET_TREE_H_

#include <functional>
#include <istream>
#include <map>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include <quiltra/core/Export.h>
#include <quiltra/core/TagId.h>
#include <quiltra/dataset/TagSelector.h>
#include <quiltra/io/Serializable.h>

namespace Quiltra {

class Dict;
class Tag;
class NestingCheck;

/// A data set: elements ordered by TagId, optionally layered over a parent.
/// A child sees its parent's elements, overrides them and hides them with deletion marks
/// without touching the parent; writes go to the layer they are called on.
/// Owns its elements jointly with other holders; a child keeps its parent alive.
/// A lookup costs one map search and one set search per layer visited; only setTag,
/// setTags, the copies and assignment copy elements.
/// Threads: const members may run concurrently; changes need exclusive use.
/// Failures: a lookup that finds nothing answers false or empty; only the storage forms
/// throw on their own account, and exceptions of Tag pass through.
class QUILTRA_EXPORT Tree : public Quiltra_Serialization::Serializable,
                            public Quiltra_Serialization::Deserializable,
                            public std::enable_shared_from_this<Tree> {
 public:
  using TagMap = std::map<TagId, std::shared_ptr<Tag>>;
  using ConstTagMap = std::map<TagId, std::shared_ptr<const Tag>>;
  using TagIdList = std::vector<TagId>;
  /// Called by forEachTag with each element of a view and its id.
  using TagVisitor = std::function<void(const TagId&, const Tag&)>;
  /// One step down into a sequence: item index of the sequence element sequence.
  struct ItemStep {
    TagId sequence;
    unsigned int index;
  };
  /// Steps from a Tree down to a sequence item at any depth, the outermost first.
  using ItemPath = std::vector<ItemStep>;

  Tree();
  /// A child layer; takes the parent's dictionary as it is now.
  explicit Tree(std::shared_ptr<const Tree> parent);
  /// Both copy forms: a deep copy of the own layer and its marks over the same parent,
  /// with the same dictionary.
  Tree(const Tree& other);
  Tree& operator=(const Tree& other);
  /// Both move forms take over the elements, marks, parent and dictionary without copying;
  /// other is left empty, without parent or dictionary.
  Tree(Tree&& other) noexcept;
  Tree& operator=(Tree&& other) noexcept;
  /// Releases the elements and the parent; a long chain of parents that only this Tree
  /// keeps alive is released layer by layer, without recursion.
  ~Tree() override;
  /// A new Tree made by the copy constructor.
  std::shared_ptr<Tree> copy() const;

  // Lookups.
  bool hasTag(const TagId& id, TagSelector selector = AllLayers) const;
  /// By attribute name, through this Tree's own dictionary; false without one or when
  /// the dictionary throws.
  bool hasTag(const std::string& name, TagSelector selector = AllLayers) const;
  /// The stored element, or empty.
  std::shared_ptr<const Tag> getTag(const TagId& id, TagSelector selector = AllLayers) const;
  std::shared_ptr<const Tag> getTag(const std::string& name,
                                    TagSelector selector = AllLayers) const;
  /// The writable element of the own layer; empty for inherited or deleted ids.
  std::shared_ptr<Tag> getTag_rw(const TagId& id);
  /// The own layer as stored, deletion placeholders included, with writable elements:
  /// only a writable Tree hands them out.
  const TagMap& tags() noexcept { return _tags; }
  /// The same entries as tags() in a new map of constant elements (O(n) to build), for
  /// holders of a constant Tree.
  ConstTagMap constTags() const;
  unsigned int tagsSize() const noexcept { return static_cast<unsigned int>(_tags.size()); }

  // Layers and dictionary.
  bool hasParent() const noexcept { return static_cast<bool>(_parent); }
  std::shared_ptr<const Tree> parent() const { return _parent; }
  /// The Tree at the top of the parent chain; this Tree itself when it has no parent
  /// (then empty unless this Tree is owned by a std::shared_ptr).
  std::shared_ptr<const Tree> root() const;
  bool hasDict() const noexcept { return static_cast<bool>(_dict); }
  std::shared_ptr<const Dict> getDict() const { return _dict; }
  /// Sets the dictionary here and in the items of sequences, at any depth, except items
  /// shared with the parent's element of the same id.
  void setDict(std::shared_ptr<const Dict> dict);

  // Changes to the own layer.
  /// Stores a deep copy of tag under id and clears a deletion mark of id.
  void setTag(const TagId& id, std::shared_ptr<const Tag> tag);
  void setTag(std::shared_ptr<const Tag> tag);
  /// Stores tag itself (shared with the caller) under id and clears a deletion mark of id.
  void addTag(const TagId& id, std::shared_ptr<Tag> tag);
  void addTag(std::shared_ptr<Tag> tag);
  /// Erases id; an id a parent holds becomes an empty placeholder marked deleted.
  void removeTag(const TagId& id);
  void removeTags(std::shared_ptr<TagIdList> ids);

  // Layers that reach into sequences.
  /// Makes the sequence item at path a layer of this Tree and returns it for changes. At
  /// each step the Tree on the way gets an own sequence element that shares every other item
  /// with the element seen below it, and the item on the path becomes a child layer over the
  /// item seen below; steps that an earlier call made are reused, not layered again. The
  /// parent is never changed; the cost is a few allocations per step and one pointer copy
  /// per item of a sequence newly made own, whatever the size of the items. The shared items
  /// stay the parent's: change them through this operation, not through getTag_rw. Throws
  /// Exception("Tree::layerSequenceItem") with "empty path", "tag does not exist" (absent
  /// or deleted in the view), "illegal type" (not SQ), "index out of range" or "null
  /// sequence item", before changing anything.
  std::shared_ptr<Tree> layerSequenceItem(const ItemPath& path);

  // Listings, copies and merging. Ranges are inclusive at both ends.
  std::shared_ptr<TagIdList> tagIds(TagSelector selector) const;
  std::shared_ptr<TagIdList> tagIds(const TagId& from, const TagId& to, TagSelector selector) const;
  /// Shares the stored elements.
  std::shared_ptr<ConstTagMap> getTags(TagSelector selector) const;
  std::shared_ptr<ConstTagMap> getTags(const TagId& from, const TagId& to,
                                       TagSelector selector) const;
  /// Calls visit for each element of the view, ascending by id: the elements getTags(selector)
  /// lists (entries stored as null pointers left out), with no map built and no reference
  /// count touched. Allocates nothing for a Tree without parent or under OwnLayer (one pass
  /// over the own map); a layered view walks the layers' maps side by side, one iterator per
  /// layer in a small vector (k layers: O(n k) id comparisons). Requires: neither this Tree
  /// nor its parents change until the walk returns. An exception of visit ends the walk.
  void forEachTag(TagSelector selector, const TagVisitor& visit) const;
  /// A deep, flat copy of the view: no parent, dictionary, marks or placeholders.
  std::shared_ptr<Tree> mergedCopy(TagSelector selector) const;
  std::shared_ptr<Tree> copy(const TagId& from, const TagId& to) const;
  std::shared_ptr<Tree> copy(std::shared_ptr<TagIdList> ids) const;
  /// Pours other's own layer into this one, sharing the elements.
  void addTags(std::shared_ptr<Tree> other);
  /// Pours other's own layer into this one as deep copies.
  void setTags(std::shared_ptr<const Tree> other);

  // Private blocks.
  /// The slot (0x10..0xFF) of creator in group, or with findFree the lowest free slot;
  /// 0 when neither exists.
  unsigned short findPrivateSlot(unsigned short group, const std::string& creator,
                                 bool findFree) const;
  /// The slot of creator, allocating a creator element in the own layer if needed;
  /// 0 when the group is full.
  unsigned short getPrivateSlot(unsigned short group, const std::string& creator);
  /// The creator text of the block id belongs to, or empty.
  std::string getPrivateCreator(TagId id) const;
  /// Removes the creator element of slot and its 256 elements.
  void removePrivateTags(unsigned short group, unsigned short slot);

  // Character sets.
  /// Converts the LO, LT, PN, SH, ST and UT values of the own layer, and of the items of its
  /// sequences at any depth, from one character set to another, changing the stored
  /// elements in place. Null values, null items and the parents (with the items that own
  /// sequences share with them) stay untouched, and
  /// (0008,0005) is not rewritten. Throws Exception("UTF8toLatin1", "source exhausted") for
  /// a truncated UTF-8 value; the values converted before it stay converted.
  void convertCharacterSet(const std::string& from, const std::string& to);

  // Storage forms.
  /// Writes the AllLayers view flat: no parent, marks or dictionary. Throws
  /// Exception("Tree::serializeX", "nesting too deep"), before writing anything, when items
  /// nest more than 256 levels below this Tree.
  void serializeX(Quiltra_Serialization::Sink& sink) const override;
  /// Throws Exception("Tree::deserializeX", "nesting too deep") past 256 nested levels.
  void deserializeX(Quiltra_Serialization::Source& source) override;
  /// The own layer and its deletion marks. Throws Exception("Tree::toStream",
  /// "cannot stream tree with parents") for a Tree with a parent, and "nesting too deep"
  /// when items nest more than 256 levels below it, in both cases before writing anything.
  void toStream(std::ostream& out) const;
  /// Replaces the own layer and marks and drops the parent; the dictionary stays. A short
  /// stream reads as zeros, and so does nesting past 256 item levels. Works alike whatever
  /// the stream's exception mask, which it leaves as it found it.
  void fromStream(std::istream& in);

 private:
  // Measures the nesting of what the writers would write, before they write.
  friend class NestingCheck;

  std::shared_ptr<const Tag> const_tag4tagid(const TagId& id, TagSelector selector) const;
  std::shared_ptr<Tag> tag4tagid(const TagId& id);
  bool isDeleted(const TagId& id) const { return _deleted && _deleted->count(id.rawId()) != 0; }
  bool hasDeletionMarks() const noexcept { return _deleted && !_deleted->empty(); }
  void markAsDeleted(const TagId& id);
  void undelete(const TagId& id) {
    if (_deleted) _deleted->erase(id.rawId());
  }
  /// Throws Exception("Tree::checkForTag", "tag does not exist").
  void checkForTag(const TagId& id, TagSelector selector) const;
  void addTagsToSet(std::set<unsigned int>& target, TagSelector selector, const TagId& from,
                    const TagId& to) const;
  void addTagsToMap(ConstTagMap& target, TagSelector selector, const TagId& from,
                    const TagId& to) const;
  /// The layers the collectors walk under selector, root-most first.
  std::vector<const Tree*> collectedLayers(TagSelector selector) const;
  /// Walks the entries in range of those layers: keep(target, entry) for a visible entry,
  /// drop(target, entry) for a deleted one.
  template <class Target, class Keep, class Drop>
  void collect(Target& target, TagSelector selector, const TagId& from, const TagId& to,
               Keep&& keep, Drop&& drop) const;

  TagMap _tags;
  // The raw ids marked deleted; null until the first mark, as most Trees never get one.
  std::unique_ptr<std::set<unsigned int>> _deleted;
  // Mutable only for the destructor, which unlinks a parent chain that this Tree alone
  // keeps alive; no other member changes the parent of a Tree.
  mutable std::shared_ptr<const Tree> _parent;
  std::shared_ptr<const Dict> _dict;
};

}  // namespace Quiltra

#endif  // QUILTRA_DATASET_TREE_H_
