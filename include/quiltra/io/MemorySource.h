#ifndef QUILTRA_IO_MEMORYSOURCE_H_
#define QUILTRA_IO_MEMORYSOURCE_H_

#include <vector>

#include <quiltra/core/Export.h>
#include <quiltra/io/Source.h>

namespace Quiltra_Serialization {

/// A Source that reads from a byte vector it owns; typed reads take whole fields from it
/// directly. Fails at the end of the bytes. Threads: one thread at a time.
class QUILTRA_EXPORT MemorySource : public Source {
 public:
  /// Reads from a copy of bytes.
  explicit MemorySource(const std::vector<unsigned char>& bytes);
  /// Reads from bytes themselves, taken over without copying (from MemorySink::takeBytes,
  /// for instance).
  explicit MemorySource(std::vector<unsigned char>&& bytes) noexcept;
  ~MemorySource() override;

  /// Throws Exception("MemorySource::readX", "cannot read past end of data") when fewer
  /// than size bytes are left. A 0-byte read succeeds. Final: the typed reads bypass it.
  void readX(void* data, unsigned int size) final;
  void rewind() override;

 private:
  const std::vector<unsigned char> _bytes;
};

}  // namespace Quiltra_Serialization

#endif  // QUILTRA_IO_MEMORYSOURCE_H_
