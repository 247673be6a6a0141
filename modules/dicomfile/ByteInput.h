#ifndef QUILTRA_MODULES_DICOMFILE_BYTEINPUT_H_
#define QUILTRA_MODULES_DICOMFILE_BYTEINPUT_H_

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace Quiltra_DicomFile {

/// Bytes read in order from a file (through a buffer, with seeks for skips) or from a range
/// of memory held by the caller. Knows the total size, so a length read from the input can
/// be checked against what is left before anything is allocated for it.
/// Not copyable; one thread at a time. Throws Exception("DicomFile::read", ...) when the
/// file cannot be opened or a read the size promised fails.
class ByteInput {
 public:
  /// Reads size bytes at data, which must outlive this object.
  ByteInput(const unsigned char* data, std::size_t size) noexcept;
  /// Reads the file at path.
  explicit ByteInput(const std::string& path);
  ByteInput(const ByteInput&) = delete;
  ByteInput& operator=(const ByteInput&) = delete;
  ~ByteInput();

  /// Bytes consumed since the start.
  std::uint64_t offset() const noexcept { return _windowOffset + (_pos - _window); }
  std::uint64_t remaining() const noexcept { return _size - offset(); }
  bool atEnd() const noexcept { return remaining() == 0; }

  /// Copies the next n bytes to target. Requires: n <= remaining().
  void read(void* target, std::size_t n);
  /// Passes over n bytes (a seek for a file). Requires: n <= remaining().
  void skip(std::uint64_t n);
  /// Copies up to n (at most kPeekMax) next bytes without consuming them; returns how many.
  std::size_t peek(unsigned char* target, std::size_t n);

  static constexpr std::size_t kPeekMax = 256;

 private:
  /// Makes at least n (<= buffer size) unread bytes visible in the window, when they exist.
  void fill(std::size_t n);
  [[noreturn]] void fail() const;

  std::FILE* _file = nullptr;
  std::vector<unsigned char> _buffer;
  const unsigned char* _window = nullptr;  // start of the visible bytes
  const unsigned char* _pos = nullptr;     // next unread byte
  const unsigned char* _end = nullptr;     // end of the visible bytes
  std::uint64_t _windowOffset = 0;         // offset of _window
  std::uint64_t _size = 0;
};

}  // namespace Quiltra_DicomFile

#endif  // QUILTRA_MODULES_DICOMFILE_BYTEINPUT_H_
