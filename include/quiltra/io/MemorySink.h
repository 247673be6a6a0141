#ifndef QUILTRA_IO_MEMORYSINK_H_
#define QUILTRA_IO_MEMORYSINK_H_

#include <vector>

#include <quiltra/core/Export.h>
#include <quiltra/io/Sink.h>

namespace Quiltra_Serialization {

/// A Sink that collects the bytes in memory, which it owns; typed writes append whole fields
/// to them directly. Never fails short of running out of memory.
/// Threads: one thread at a time.
class QUILTRA_EXPORT MemorySink : public Sink {
 public:
  MemorySink() noexcept;
  ~MemorySink() override;

  /// Final: the typed writes bypass it, so an override would not see every byte.
  void writeX(const void* data, unsigned int size) final;

  /// Everything written so far. Valid until the next write.
  const std::vector<unsigned char>& bytes() const noexcept { return _bytes; }
  /// Hands everything written so far over without copying; the sink starts again empty.
  std::vector<unsigned char> takeBytes() noexcept;

 private:
  std::vector<unsigned char> _bytes;
};

}  // namespace Quiltra_Serialization

#endif  // QUILTRA_IO_MEMORYSINK_H_
