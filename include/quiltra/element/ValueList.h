#ifndef QUILTRA_ELEMENT_VALUELIST_H_
#define QUILTRA_ELEMENT_VALUELIST_H_

#include <cstddef>
#include <utility>
#include <vector>

#include <quiltra/core/Value.h>

namespace Quiltra {

/// The values of a Tag, index 0 first: the first value lives inside the list and the others
/// in a vector, so an element with one value costs no allocation for its list. A reference
/// to a value stays valid until values are added or removed. Copies are deep; a moved-from
/// list is empty. Throws only what Value and the vector throw when memory runs out.
/// Threads: a plain member of its Tag.
class ValueList {
 public:
  ValueList() = default;
  ValueList(const ValueList& other) = default;
  ValueList& operator=(const ValueList& other) = default;
  ValueList(ValueList&& other) noexcept
      : _first(std::move(other._first)), _rest(std::move(other._rest)), _count(other._count) {
    other.clear();
  }
  ValueList& operator=(ValueList&& other) noexcept {
    if (this == &other) return *this;
    _first = std::move(other._first);
    _rest = std::move(other._rest);
    _count = other._count;
    other.clear();
    return *this;
  }
  ~ValueList() = default;

  std::size_t size() const noexcept { return _count; }
  bool empty() const noexcept { return _count == 0; }
  /// Requires: index < size().
  const Value& operator[](std::size_t index) const noexcept {
    return index == 0 ? _first : _rest[index - 1];
  }
  Value& operator[](std::size_t index) noexcept { return index == 0 ? _first : _rest[index - 1]; }

  /// Appends a null value and returns it.
  Value& emplaceBack() {
    if (_count != 0) _rest.emplace_back();
    ++_count;
    return (*this)[_count - 1];
  }
  /// Removes every value.
  void clear() noexcept {
    _first.purge();
    _rest.clear();
    _count = 0;
  }

 private:
  Value _first;              // index 0, null while the list is empty
  std::vector<Value> _rest;  // indexes 1 and up
  std::size_t _count = 0;
};

}  // namespace Quiltra

#endif  // QUILTRA_ELEMENT_VALUELIST_H_
