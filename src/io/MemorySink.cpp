#include "quiltra/io/MemorySink.h"

#include "MemoryAppend.h"

namespace Quiltra_Serialization {

// The base keeps the address of _bytes only; it is not used before the sink is built.
MemorySink::MemorySink() noexcept : Sink(_bytes) {}

MemorySink::~MemorySink() = default;

void MemorySink::writeX(const void* data, unsigned int size) {
  if (size == 0) return;
  const auto* bytes = static_cast<const unsigned char*>(data);
  appendToMemory(_bytes, bytes, size);
}

std::vector<unsigned char> MemorySink::takeBytes() noexcept {
  std::vector<unsigned char> taken;
  taken.swap(_bytes);
  return taken;
}

}  // namespace Quiltra_Serialization
