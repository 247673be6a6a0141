#ifndef QUILTRA_ELEMENT_TAG_H_
#define QUILTRA_ELEMENT_TAG_H_

#include <istream>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <quiltra/core/DateTime.h>
#include <quiltra/core/Export.h>
#include <quiltra/core/TagInfo.h>
#include <quiltra/core/Value.h>
#include <quiltra/core/Vr.h>
#include <quiltra/element/ValueList.h>
#include <quiltra/io/Serializable.h>

namespace Quiltra {

class Tree;
class NestingCheck;

/// One data element: its description, its raw values and, for a sequence, its items.
/// Owns its values; shares its sequence-item Trees with whoever else holds them (an
/// item slot may be null). The list of items is allocated only when items are first
/// added, so the many elements that are no sequences carry one null pointer for it.
/// Copies are deep: items are copied through Tree::copy.
/// Typed accessors check the representation and the index first and throw Exception
/// with the operation names and texts of the checks ("Tag::typeChecking" "illegal
/// type", "Tag::rangeChecking" "index out of range", "nullChecking").
/// Threads: const members may run concurrently; changes need exclusive use.
class QUILTRA_EXPORT Tag : public Quiltra_Serialization::Serializable,
                           public Quiltra_Serialization::Deserializable {
 public:
  using Items = std::vector<std::shared_ptr<Tree>>;

  Tag() = default;
  explicit Tag(const TagInfo& info);
  /// Deep copy: values copied, items copied through Tree::copy, null items kept null.
  /// Assignment builds the copy before it changes anything, so a failing copy leaves the
  /// target as it was.
  Tag(const Tag& other);
  Tag& operator=(const Tag& other);
  Tag(Tag&& other) noexcept = default;
  Tag& operator=(Tag&& other) noexcept = default;
  ~Tag() override;
  /// A new deep copy of this element.
  std::shared_ptr<Tag> copy() const;

  // Description.
  const TagInfo& info() const noexcept { return _info; }
  /// Replaces the description only; values and items stay.
  void setInfo(const TagInfo& info);
  bool isSequence() const noexcept { return _info.vr() == SQ; }

  // Raw values: index checks only, no representation checks.
  unsigned int numberOfValues() const noexcept { return static_cast<unsigned int>(_values.size()); }
  unsigned int getValueSize(unsigned int index) const;
  /// Sum of the sizes of all values.
  unsigned int getValueSize() const;
  const Value& getValue(unsigned int index) const;
  void setValue(const Value& value, unsigned int index);
  /// Takes value's buffer over as value index.
  void setValue(Value&& value, unsigned int index);
  /// Appends an empty value for the caller to fill. Valid until the next change of values.
  Value& addValue();
  bool isNull(unsigned int index) const;
  /// No values and no items.
  bool isEmpty() const noexcept { return _values.empty() && (!_items || _items->empty()); }
  void dropValues() noexcept { _values.clear(); }

  // Sequence items.
  unsigned int numberOfSequenceItems() const noexcept {
    return _items ? static_cast<unsigned int>(_items->size()) : 0u;
  }
  /// Both throw "illegal type" unless the representation is SQ. The constant list holds
  /// the items as they are: they are shared with this Tag, not protected, so a holder of
  /// a constant Tag can still change an item's elements through it. An element without
  /// items answers one shared empty list, which later additions do not change. The
  /// writable list is made on first use and stays valid until the Tag is assigned, moved
  /// from or destroyed.
  const Items& sequenceItems() const;
  Items& sequenceItems();
  void setSequenceItem(const std::shared_ptr<Tree>& item, unsigned int index);
  /// Appends a null slot for the caller to fill; no representation check.
  std::shared_ptr<Tree>& addSequenceItem();
  void addSequenceItem(const std::shared_ptr<Tree>& item);
  bool isSequenceItemNull(unsigned int index) const;
  /// Releases item index and leaves its slot null.
  void dropSequenceItem(unsigned int index);
  /// Removes every item slot; a list already made is kept for the items to come.
  void dropSequenceItems() noexcept {
    if (_items) _items->clear();
  }

  // Typed readers.
  int toInt(unsigned int index) const;
  unsigned int toUInt(unsigned int index) const;
  short toShort(unsigned int index) const;
  unsigned short toUShort(unsigned int index) const;
  float toFloat(unsigned int index) const;
  /// DS, IS, SL, UL and FL values arrive with single precision.
  double toDouble(unsigned int index) const;
  Date toDate(unsigned int index) const;
  Time toTime(unsigned int index) const;
  std::pair<Date, Time> toDateTime(unsigned int index) const;
  std::string toString(unsigned int index) const;
  /// All values joined with backslashes; null values give empty pieces.
  std::string toString() const;

  // Typed writers: replace value index, which must exist.
  void setValue(int value, unsigned int index);
  void setValue(unsigned int value, unsigned int index);
  void setValue(short value, unsigned int index);
  void setValue(unsigned short value, unsigned int index);
  void setValue(float value, unsigned int index);
  void setValue(double value, unsigned int index);
  void setValue(const std::string& text, unsigned int index);
  void setValue(Date date, unsigned int index);
  void setValue(Time time, unsigned int index);
  void setValue(std::pair<Date, Time> value, unsigned int index);

  // Typed appenders: check the type, append an empty value, then write it; the appended
  // value stays, empty, when the write fails.
  void addValue(int value);
  void addValue(unsigned int value);
  void addValue(short value);
  void addValue(unsigned short value);
  void addValue(float value);
  void addValue(double value);
  /// Splits at backslashes (except LT, ST, UT) and appends one value per piece.
  void addValue(const std::string& text);
  void addValue(Date date);
  void addValue(Time time);
  void addValue(std::pair<Date, Time> value);

  // Comparison.
  /// Three-way order of the values: numerically with a relative tolerance when both
  /// representations are numeric, else byte-wise; more values order after.
  int compare(const Tag& other, double tolerance) const;
  /// Same id, same number of values and equal values (absolute tolerance for FL, FD and
  /// DS); sequences compare their items element by element.
  bool isEqual(const Tag& other, double tolerance) const;
  bool operator==(const Tag& other) const { return isEqual(other, 0.0); }
  bool operator!=(const Tag& other) const { return !isEqual(other, 0.0); }

  // Storage forms.
  /// Throws Exception("Tag::serializeX", "null sequence item") for a null item, and
  /// Exception("Tree::serializeX", "nesting too deep"), before writing anything, when items
  /// nest more than 256 levels below this Tag.
  void serializeX(Quiltra_Serialization::Sink& sink) const override;
  /// Throws Exception("Tree::deserializeX", "nesting too deep") for items more than 256
  /// levels below this Tag.
  void deserializeX(Quiltra_Serialization::Source& source) override;
  /// Throws Exception("Tag::toStream", "null sequence item") for a null item, and
  /// Exception("Tree::toStream", "nesting too deep") as serializeX does.
  void toStream(std::ostream& out) const;
  /// Items more than 256 levels below this Tag read as the end of the stream.
  void fromStream(std::istream& in);

 private:
  // Measures the nesting of what the writers would write, before they write.
  friend class NestingCheck;

  /// The items without a representation check; the shared empty list when there are none.
  const Items& itemList() const noexcept;
  /// The items, making the list when there is none yet.
  Items& writableItems();
  bool isOfType(const VRCType& type) const { return isType(_info.vr(), type); }
  void typeChecking(const VRCType& type) const;
  void rangeChecking(const unsigned int& index) const;
  void sequenceRangeChecking(const unsigned int& index) const;
  void typeAndRangeChecking(const VRCType& type, const unsigned int& index) const;
  /// The value index after the reader checks in either order and nullChecking.
  const Value& readableTypeFirst(const VRCType& type, unsigned int index) const;
  const Value& readableRangeFirst(const VRCType& type, unsigned int index) const;
  /// The typed appenders: check the type, append an empty value, write it with setValue.
  template <class T>
  void addChecked(const VRCType& type, T value);
  /// setValue(text, index) from a view of the text.
  void setText(std::string_view text, unsigned int index);
  int compareNumerical(const Tag& other, int count, double tolerance) const;
  int compareBytes(const Tag& other, int count) const;

  TagInfo _info;
  ValueList _values;
  std::unique_ptr<Items> _items;  // null until the first item is added
};

/// Throws Exception("nullChecking") with an empty description when value is null.
QUILTRA_EXPORT void nullChecking(const Value& value);

}  // namespace Quiltra

#endif  // QUILTRA_ELEMENT_TAG_H_
