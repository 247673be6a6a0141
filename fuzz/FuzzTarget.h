#ifndef QUILTRA_FUZZ_FUZZTARGET_H_
#define QUILTRA_FUZZ_FUZZTARGET_H_

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include <quiltra/io/MemorySink.h>

namespace QuiltraFuzz {

// The first input byte picks the class a harness reads; the rest is its encoding.
enum class Target : std::uint8_t { TagId, Value, TagInfo, Tag, Tree, Count };

inline Target pickTarget(std::uint8_t selector) {
  return static_cast<Target>(selector % static_cast<std::uint8_t>(Target::Count));
}

// The text stream form of object.
template <class Object>
std::string textOf(const Object& object) {
  std::ostringstream out;
  object.toStream(out);
  return out.str();
}

// The binary form of object, as a string of bytes.
template <class Object>
std::string binaryOf(const Object& object) {
  Quiltra_Serialization::MemorySink sink;
  object.serializeX(sink);
  return std::string(sink.bytes().begin(), sink.bytes().end());
}

}  // namespace QuiltraFuzz

#endif  // QUILTRA_FUZZ_FUZZTARGET_H_
