#include "quiltra/io/MemorySource.h"

#include <cstring>
#include <utility>

#include <quiltra/core/Exception.h>

namespace Quiltra_Serialization {

// The base keeps the address of _bytes only; it is not used before the source is built.
MemorySource::MemorySource(const std::vector<unsigned char>& bytes)
    : Source(_bytes), _bytes(bytes) {}

MemorySource::MemorySource(std::vector<unsigned char>&& bytes) noexcept
    : Source(_bytes), _bytes(std::move(bytes)) {}

MemorySource::~MemorySource() = default;

void MemorySource::readX(void* data, unsigned int size) {
  std::size_t& position = memoryPosition();
  if (size > _bytes.size() - position) {
    throw Quiltra::Exception("MemorySource::readX", "cannot read past end of data");
  }
  if (size == 0) return;
  std::memcpy(data, _bytes.data() + position, size);
  position += size;
}

void MemorySource::rewind() {
  memoryPosition() = 0;
}

}  // namespace Quiltra_Serialization
