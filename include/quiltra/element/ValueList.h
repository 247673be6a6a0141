#ifndef QUILTRA_ELEMENT_VALUELIST_H_
#define QUILTRA_ELEMENT_VALUELIST_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include <quiltra/core/Value.h>

namespace Quiltra {

/// The values of a Tag, index 0 first: the first value lives inside the list and the others
/// in a vector allocated when a second value arrives, so an element with one value costs no
/// allocation for its list and a list stays small. A reference to a value stays valid until
/// values are added or removed. Copies are deep; a moved-from list is empty. Throws only what
/// Value and the vector throw when memory runs out. Threads: a plain member of its Tag.
class ValueList {
 public:
  ValueList() = default;
  /// Deep copy; allocates the vector only when other holds more than one value.
  ValueList(const ValueList& other)
      : _first(other._first),
        _rest(other._count > 1 ? std::make_unique<std::vector<Value>>(*other._rest) : nullptr),
        _count(other._count) {}
  /// Builds the copy aside, so a failing copy leaves this list as it was.
  ValueList& operator=(const ValueList& other) {
    if (this == &other) return *this;
    ValueList copied(other);
    return *this = std::move(copied);
  }
  ValueList(ValueList&& other) noexcept
      : _first(std::move(other._first)), _rest(std::move(other._rest)), _count(other._count) {
    other._count = 0;
  }
  ValueList& operator=(ValueList&& other) noexcept {
    if (this == &other) return *this;
    _first = std::move(other._first);
    _rest = std::move(other._rest);
    _count = other._count;
    other._count = 0;
    return *this;
  }
  ~ValueList() = default;

  std::size_t size() const noexcept { return _count; }
  bool empty() const noexcept { return _count == 0; }
  /// Requires: index < size().
  const Value& operator[](std::size_t index) const noexcept {
    return index == 0 ? _first : (*_rest)[index - 1];
  }
  Value& operator[](std::size_t index) noexcept {
    return index == 0 ? _first : (*_rest)[index - 1];
  }

  /// Appends a null value and returns it.
  Value& emplaceBack() {
    if (_count == 0) {
      _count = 1;
      return _first;  // null while the list is empty
    }
    if (!_rest) _rest = std::make_unique<std::vector<Value>>();
    Value& added = _rest->emplace_back();
    ++_count;
    return added;
  }
  /// Removes every value; the vector of the others is kept for the values to come.
  void clear() noexcept {
    _first.purge();
    if (_rest) _rest->clear();
    _count = 0;
  }

 private:
  Value _first;                               // index 0, null while the list is empty
  std::unique_ptr<std::vector<Value>> _rest;  // indexes 1 and up; null until a second value
  std::uint32_t _count = 0;                   // _rest holds _count - 1 values when _count > 1
};

}  // namespace Quiltra

#endif  // QUILTRA_ELEMENT_VALUELIST_H_
