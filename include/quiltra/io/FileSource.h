#ifndef QUILTRA_IO_FILESOURCE_H_
#define QUILTRA_IO_FILESOURCE_H_

#include <cstdio>
#include <string>

#include <quiltra/core/Export.h>
#include <quiltra/io/Source.h>

namespace Quiltra_Serialization {

/// A Source that reads a file through the standard buffered file interface.
/// Owns its handle (opened "rb" by the constructor, closed by the destructor); not copyable.
/// Threads: one thread at a time.
class QUILTRA_EXPORT FileSource : public Source {
 public:
  /// Throws Exception("FileSource::FileSource", "cannot open file for reading").
  explicit FileSource(const std::string& path);
  ~FileSource() override;

  /// Throws "no open file", or "cannot read from file" when fewer than size bytes (or a
  /// 0-byte block) are read.
  void readX(void* data, unsigned int size) override;
  /// Seeks to the start; throws "no open file" or "cannot fseek file".
  void rewind() override;

 private:
  std::FILE* _file = nullptr;
};

}  // namespace Quiltra_Serialization

#endif  // QUILTRA_IO_FILESOURCE_H_
