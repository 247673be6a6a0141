#include "quiltra/core/Value.h"

#include "ValueText.h"

#include <cstring>
#include <limits>
#include <new>
#include <string>

#include <quiltra/core/Exception.h>

namespace Quiltra {

Value::Value(const unsigned int& n) {
  allocate(n);
}

Value::Value(const unsigned int& n, const unsigned char* bytes) {
  if (bytes == nullptr) {
    allocate(n);
    return;
  }
  allocateForOverwrite(n);
  if (_size != 0) std::memcpy(data(), bytes, _size);
}

// Base classes carry no data; the copy gets exactly other's size as its capacity.
Value::Value(const Value& other) : Serializable(other), Deserializable(other) {
  allocateForOverwrite(other._size);
  if (_size != 0) std::memcpy(data(), other.data(), _size);
}

Value::Value(Value&& other) noexcept : Serializable(other), Deserializable(other) {
  takeBuffer(other);
}

// Reuses a buffer that is large enough, so a larger one is never shrunk.
Value& Value::operator=(const Value& other) {
  if (this == &other) return *this;
  setSize(other._size);
  if (_size != 0) std::memcpy(data(), other.data(), _size);
  return *this;
}

Value& Value::operator=(Value&& other) noexcept {
  if (this == &other) return *this;
  purge();
  takeBuffer(other);
  return *this;
}

Value::~Value() {
  if (_capacity > kInlineCapacity) delete[] _heap;
}

void Value::takeBuffer(Value& other) noexcept {
  if (other._capacity > kInlineCapacity) {
    _heap = other._heap;
  } else if (other._capacity != 0) {
    std::memcpy(_inline, other._inline, other._capacity);
  }
  _size = other._size;
  _capacity = other._capacity;
  other._heap = nullptr;
  other._size = 0;
  other._capacity = 0;
}

void Value::setSize(const unsigned int& n) {
  const unsigned int size = n;  // n may alias a member that purge() clears
  if (size > _capacity) {
    allocate(size);
    return;
  }
  if (size == 0) {
    purge();
    return;
  }
  _size = size;
}

void Value::setData(const unsigned int& n, const unsigned char* bytes) {
  const unsigned int size = n;
  setSize(size);
  // memmove: bytes may point into this value's own buffer when it was kept.
  if (_size != 0 && bytes != nullptr) std::memmove(data(), bytes, size);
}

// The terminator and anything after an embedded zero character are written as zeros, so
// a reused buffer shows no stale bytes within the new size.
void Value::setData(const std::string& text) {
  setTextData(*this, text);
}

void Value::purge() noexcept {
  if (_capacity > kInlineCapacity) delete[] _heap;
  _heap = nullptr;
  _size = 0;
  _capacity = 0;
}

bool Value::operator==(const Value& other) const noexcept {
  if (_size != other._size) return false;
  return _size == 0 || std::memcmp(data(), other.data(), _size) == 0;
}

void Value::allocate(const unsigned int& n) {
  allocateForOverwrite(n);
  if (_size != 0) std::memset(data(), 0, _size);
}

void Value::allocateForOverwrite(unsigned int n) {
  purge();
  if (n == 0) return;
  if (n > kInlineCapacity) {
    try {
      _heap = new unsigned char[n];
    } catch (const std::bad_alloc&) {
      throw Exception("Value::allocate", "out of memory");
    }
  }
  _size = n;
  _capacity = n;
}

}  // namespace Quiltra
