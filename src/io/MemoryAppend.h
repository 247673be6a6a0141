#ifndef QUILTRA_IO_MEMORYAPPEND_H_
#define QUILTRA_IO_MEMORYAPPEND_H_

#include <algorithm>
#include <cstddef>
#include <vector>

namespace Quiltra_Serialization {

/// Appends n bytes to memory, growing it by at least half as much again as it needs. A plain
/// insert of a long field leaves no room behind it, so the next small field would copy
/// everything once more (a 256 MiB value twice over).
inline void appendToMemory(std::vector<unsigned char>& memory, const unsigned char* bytes,
                           std::size_t n) {
  const std::size_t needed = memory.size() + n;
  if (needed > memory.capacity()) {
    memory.reserve(std::max(2 * memory.capacity(), needed + needed / 8));
  }
  memory.insert(memory.end(), bytes, bytes + n);
}

}  // namespace Quiltra_Serialization

#endif  // QUILTRA_IO_MEMORYAPPEND_H_
