#ifndef QUILTRA_IO_MEMORYSINK_H_
#define QUILTRA_IO_MEMORYSINK_H_

#include <vector>

#include <quiltra/core/Export.h>
#include <quiltra/io/Sink.h>

namespace Quiltra_Serialization {

/// A Sink that collects the bytes in memory, which it owns. Never fails short of running out
/// of memory. Threads: one thread at a time.
class QUILTRA_EXPORT MemorySink : public Sink {
 public:
  MemorySink() = default;
  ~MemorySink() override;

  void writeX(const void* data, unsigned int size) override;

  /// Everything written so far. Valid until the next write.
  const std::vector<unsigned char>& bytes() const noexcept { return _bytes; }

 private:
  std::vector<unsigned char> _bytes;
};

}  // namespace Quiltra_Serialization

#endif  // QUILTRA_IO_MEMORYSINK_H_
