#include "quiltra/io/MemorySink.h"

namespace Quiltra_Serialization {

MemorySink::~MemorySink() = default;

void MemorySink::writeX(const void* data, unsigned int size) {
  if (size == 0) return;
  const auto* bytes = static_cast<const unsigned char*>(data);
  _bytes.insert(_bytes.end(), bytes, bytes + size);
}

}  // namespace Quiltra_Serialization
