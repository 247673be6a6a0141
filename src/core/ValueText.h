#ifndef QUILTRA_CORE_VALUETEXT_H_
#define QUILTRA_CORE_VALUETEXT_H_

#include <cstring>
#include <limits>
#include <string_view>

#include <quiltra/core/Exception.h>
#include <quiltra/core/Value.h>

namespace Quiltra {

/// Value::setData of a text given as a view, so that callers holding a piece of a longer
/// text need not copy it into a string first: the text and a terminating zero, with anything
/// after an embedded zero written as zeros, so a reused buffer shows no stale bytes.
inline void setTextData(Value& value, std::string_view text) {
  // The size with its terminator must fit in 32 bits, or the copy would overrun the buffer.
  if (text.size() >= std::numeric_limits<unsigned int>::max()) {
    value.purge();
    throw Exception("Value::allocate", "out of memory");
  }
  const std::size_t zero = text.find('\0');
  const std::size_t length = zero == std::string_view::npos ? text.size() : zero;
  value.setSize(static_cast<unsigned int>(text.size() + 1));
  unsigned char* bytes = value.data();
  std::memcpy(bytes, text.data(), length);
  std::memset(bytes + length, 0, value.size() - length);
}

}  // namespace Quiltra

#endif  // QUILTRA_CORE_VALUETEXT_H_
