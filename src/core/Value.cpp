#include "quiltra/core/Value.h"

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
  allocate(n);
  if (_size != 0 && bytes != nullptr) std::memcpy(_data, bytes, _size);
}

// Base classes carry no data; setSize on an empty value gives exactly other's size.
Value::Value(const Value& other) : Serializable(other), Deserializable(other) {
  setSize(other._size);
  if (_size != 0 && other._data != nullptr) std::memcpy(_data, other._data, _size);
}

Value::Value(Value&& other) noexcept
    : Serializable(other),
      Deserializable(other),
      _data(other._data),
      _size(other._size),
      _capacity(other._capacity) {
  other._data = nullptr;
  other._size = 0;
  other._capacity = 0;
}

// Reuses a buffer that is large enough, so a larger one is never shrunk.
Value& Value::operator=(const Value& other) {
  if (this == &other) return *this;
  setSize(other._size);
  if (_size != 0 && other._data != nullptr) std::memcpy(_data, other._data, _size);
  return *this;
}

Value& Value::operator=(Value&& other) noexcept {
  if (this == &other) return *this;
  delete[] _data;
  _data = other._data;
  _size = other._size;
  _capacity = other._capacity;
  other._data = nullptr;
  other._size = 0;
  other._capacity = 0;
  return *this;
}

Value::~Value() {
  delete[] _data;
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
  if (_size != 0 && bytes != nullptr) std::memmove(_data, bytes, size);
}

// The terminator and anything after an embedded zero character are written as zeros, so
// a reused buffer shows no stale bytes within the new size.
void Value::setData(const std::string& text) {
  // The size with its terminator must fit in 32 bits, or the copy would overrun the buffer.
  if (text.size() >= std::numeric_limits<unsigned int>::max()) {
    purge();
    throw Exception("Value::allocate", "out of memory");
  }
  const std::size_t zero = text.find('\0');
  const std::size_t length = zero == std::string::npos ? text.size() : zero;
  setSize(static_cast<unsigned int>(text.size() + 1));
  std::memcpy(_data, text.data(), length);
  std::memset(_data + length, 0, _size - length);
}

void Value::purge() noexcept {
  delete[] _data;
  _data = nullptr;
  _size = 0;
  _capacity = 0;
}

bool Value::operator==(const Value& other) const noexcept {
  if (_size != other._size) return false;
  return _size == 0 || std::memcmp(_data, other._data, _size) == 0;
}

void Value::allocate(const unsigned int& n) {
  const unsigned int size = n;
  purge();
  if (size == 0) return;
  try {
    _data = new unsigned char[size]();
  } catch (const std::bad_alloc&) {
    throw Exception("Value::allocate", "out of memory");
  }
  _size = size;
  _capacity = size;
}

}  // namespace Quiltra
