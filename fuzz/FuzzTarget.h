#ifndef QUILTRA_FUZZ_FUZZTARGET_H_
#define QUILTRA_FUZZ_FUZZTARGET_H_

#include <cstddef>
#include <cstdint>

namespace QuiltraFuzz {

// The first input byte picks the class a harness reads; the rest is its encoding.
enum class Target : std::uint8_t { TagId, Value, TagInfo, Tag, Tree, Count };

inline Target pickTarget(std::uint8_t selector) {
  return static_cast<Target>(selector % static_cast<std::uint8_t>(Target::Count));
}

}  // namespace QuiltraFuzz

#endif  // QUILTRA_FUZZ_FUZZTARGET_H_
