#include "quiltra/io/MemorySource.h"

#include <cstring>
#include <utility>

#include <quiltra/core/Exception.h>

namespace Quiltra_Serialization {

MemorySource::MemorySource(std::vector<unsigned char> bytes) : _bytes(std::move(bytes)) {}

MemorySource::~MemorySource() = default;

void MemorySource::readX(void* data, unsigned int size) {
  if (size > _bytes.size() - _position) {
    throw Quiltra::Exception("MemorySource::readX", "cannot read past end of data");
  }
  if (size == 0) return;
  std::memcpy(data, _bytes.data() + _position, size);
  _position += size;
}

void MemorySource::rewind() {
  _position = 0;
}

}  // namespace Quiltra_Serialization
