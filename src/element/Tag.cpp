#include "quiltra/element/Tag.h"

#include <cstddef>
#include <memory>
#include <string>
#include <utility>

#include <quiltra/core/Exception.h>
#include <quiltra/dataset/Tree.h>

namespace Quiltra {

namespace {

// Failure texts are built once per process; a failed check allocates only the Exception.
const std::string& indexOutOfRange() {
  static const std::string kText("index out of range");
  return kText;
}

}  // namespace

Tag::Tag(const TagInfo& info) : _info(info) {}

// Items are copied through Tree::copy; a null item stays null. A copy of an element without
// items gets no list of items.
Tag::Tag(const Tag& other)
    : Serializable(other), Deserializable(other), _info(other._info), _values(other._values) {
  const Items& items = other.itemList();
  if (items.empty()) return;
  _items = std::make_unique<Items>(items.size());
  for (std::size_t index = 0; index < items.size(); ++index) {
    if (items[index]) (*_items)[index] = items[index]->copy();
  }
}

// The copy is built aside, so a copy that fails leaves this Tag as it was; the moves that
// follow cannot fail. other may live inside one of this Tag's items, which the move releases
// only after everything has been taken from other.
Tag& Tag::operator=(const Tag& other) {
  if (this == &other) return *this;
  Tag copied(other);
  return *this = std::move(copied);
}

Tag::~Tag() = default;

std::shared_ptr<Tag> Tag::copy() const {
  return std::make_shared<Tag>(*this);
}

void Tag::setInfo(const TagInfo& info) {
  _info = info;
}

unsigned int Tag::getValueSize(unsigned int index) const {
  rangeChecking(index);
  return _values[index].size();
}

unsigned int Tag::getValueSize() const {
  unsigned int total = 0;
  for (std::size_t index = 0; index < _values.size(); ++index) total += _values[index].size();
  return total;
}

const Value& Tag::getValue(unsigned int index) const {
  rangeChecking(index);
  return _values[index];
}

void Tag::setValue(const Value& value, unsigned int index) {
  rangeChecking(index);
  _values[index] = value;
}

void Tag::setValue(Value&& value, unsigned int index) {
  rangeChecking(index);
  _values[index] = std::move(value);
}

Value& Tag::addValue() {
  return _values.emplaceBack();
}

bool Tag::isNull(unsigned int index) const {
  rangeChecking(index);
  return _values[index].isNull();
}

const Tag::Items& Tag::itemList() const noexcept {
  static const Items kNoItems;
  return _items ? *_items : kNoItems;
}

Tag::Items& Tag::writableItems() {
  if (!_items) _items = std::make_unique<Items>();
  return *_items;
}

const Tag::Items& Tag::sequenceItems() const {
  typeChecking(VRC_SEQUENCE);
  return itemList();
}

Tag::Items& Tag::sequenceItems() {
  typeChecking(VRC_SEQUENCE);
  return writableItems();
}

// The range checks below pass only when the list exists.
void Tag::setSequenceItem(const std::shared_ptr<Tree>& item, unsigned int index) {
  typeChecking(VRC_SEQUENCE);
  sequenceRangeChecking(index);
  (*_items)[index] = item;
}

std::shared_ptr<Tree>& Tag::addSequenceItem() {
  return writableItems().emplace_back();
}

void Tag::addSequenceItem(const std::shared_ptr<Tree>& item) {
  typeChecking(VRC_SEQUENCE);
  writableItems().push_back(item);
}

bool Tag::isSequenceItemNull(unsigned int index) const {
  sequenceRangeChecking(index);
  return !(*_items)[index];
}

void Tag::dropSequenceItem(unsigned int index) {
  typeChecking(VRC_SEQUENCE);
  sequenceRangeChecking(index);
  (*_items)[index].reset();
}

void Tag::typeChecking(const VRCType& type) const {
  static const std::string kMethod("Tag::typeChecking");
  static const std::string kDescription("illegal type");
  if (!isOfType(type)) throw Exception(kMethod, kDescription);
}

void Tag::rangeChecking(const unsigned int& index) const {
  static const std::string kMethod("Tag::rangeChecking");
  if (index >= numberOfValues()) throw Exception(kMethod, indexOutOfRange());
}

void Tag::sequenceRangeChecking(const unsigned int& index) const {
  static const std::string kMethod("Tag::sequenceRangeChecking");
  if (index >= numberOfSequenceItems()) throw Exception(kMethod, indexOutOfRange());
}

void Tag::typeAndRangeChecking(const VRCType& type, const unsigned int& index) const {
  rangeChecking(index);
  typeChecking(type);
}

void nullChecking(const Value& value) {
  static const std::string kMethod("nullChecking");
  if (value.isNull()) throw Exception(kMethod);
}

}  // namespace Quiltra
