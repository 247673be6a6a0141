#ifndef QUILTRA_IO_MEMORYSOURCE_H_
#define QUILTRA_IO_MEMORYSOURCE_H_

#include <cstddef>
#include <vector>

#include <quiltra/core/Export.h>
#include <quiltra/io/Source.h>

namespace Quiltra_Serialization {

/// A Source that reads from a byte vector it owns; fails at the end of the bytes.
/// Threads: one thread at a time.
class QUILTRA_EXPORT MemorySource : public Source {
 public:
  explicit MemorySource(std::vector<unsigned char> bytes);
  ~MemorySource() override;

  /// Throws Exception("MemorySource::readX", "cannot read past end of data") when fewer
  /// than size bytes are left. A 0-byte read succeeds.
  void readX(void* data, unsigned int size) override;
  void rewind() override;

 private:
  std::vector<unsigned char> _bytes;
  std::size_t _position = 0;
};

}  // namespace Quiltra_Serialization

#endif  // QUILTRA_IO_MEMORYSOURCE_H_
