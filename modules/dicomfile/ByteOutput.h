#ifndef QUILTRA_MODULES_DICOMFILE_BYTEOUTPUT_H_
#define QUILTRA_MODULES_DICOMFILE_BYTEOUTPUT_H_

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace Quiltra_DicomFile {

/// Bytes written in order to a file (through a buffer) or appended to a vector.
/// Not copyable; one thread at a time. Throws Exception("DicomFile::write", ...) when the
/// file cannot be opened or written.
class ByteOutput {
 public:
  /// Appends to target, which must outlive this object.
  explicit ByteOutput(std::vector<unsigned char>& target) noexcept : _memory(&target) {}
  /// Creates (or truncates) the file at path.
  explicit ByteOutput(const std::string& path);
  ByteOutput(const ByteOutput&) = delete;
  ByteOutput& operator=(const ByteOutput&) = delete;
  /// Closes a file without reporting errors: call close() to learn of them.
  ~ByteOutput();

  void write(const void* data, std::size_t n);
  void put(unsigned char byte) {
    if (_memory == nullptr && _buffer.size() < kBufferSize) {
      _buffer.push_back(byte);
      return;
    }
    write(&byte, 1);
  }
  /// Writes n bytes, reversing each group of width bytes (width 2, 4 or 8; n a multiple).
  void writeSwapped(const unsigned char* data, std::size_t n, std::size_t width);
  std::uint64_t written() const noexcept { return _written + _buffer.size(); }
  /// Flushes and closes a file; throws when that fails.
  void close();

  static constexpr std::size_t kBufferSize = 256 * 1024;

 private:
  void flush();

  std::vector<unsigned char>* _memory = nullptr;
  std::FILE* _file = nullptr;
  std::vector<unsigned char> _buffer;
  std::uint64_t _written = 0;
};

}  // namespace Quiltra_DicomFile

#endif  // QUILTRA_MODULES_DICOMFILE_BYTEOUTPUT_H_
