#ifndef QUILTRA_IO_FILESINK_H_
#define QUILTRA_IO_FILESINK_H_

#include <cstdio>
#include <string>

#include <quiltra/core/Export.h>
#include <quiltra/io/Sink.h>

namespace Quiltra_Serialization {

/// A Sink that writes to a file through the standard buffered file interface.
/// Owns its handle (opened "wb+" by the constructor, closed by the destructor); not
/// copyable, so the handle is never closed twice. Threads: one thread at a time.
class QUILTRA_EXPORT FileSink : public Sink {
 public:
  /// Throws Exception("FileSink::FileSink", "cannot open file for writing").
  explicit FileSink(const std::string& path);
  ~FileSink() override;

  /// Throws "not open file", or "cannot write to file" when the block (a 0-byte block
  /// included) is not written whole.
  void writeX(const void* data, unsigned int size) override;

 private:
  std::FILE* _file = nullptr;
};

}  // namespace Quiltra_Serialization

#endif  // QUILTRA_IO_FILESINK_H_
