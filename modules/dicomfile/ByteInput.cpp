#include "ByteInput.h"

#include <algorithm>
#include <cstring>

#include <quiltra/core/Exception.h>

namespace Quiltra_DicomFile {

namespace {
constexpr std::size_t kBufferSize = 256 * 1024;
}

ByteInput::ByteInput(const unsigned char* data, std::size_t size) noexcept
    : _window(data), _pos(data), _end(data + size), _size(size) {}

ByteInput::ByteInput(const std::string& path) : _file(std::fopen(path.c_str(), "rb")) {
  if (_file == nullptr) throw Quiltra::Exception("DicomFile::read", "cannot open " + path);
  if (std::fseek(_file, 0, SEEK_END) != 0) fail();
  const long size = std::ftell(_file);
  if (size < 0 || std::fseek(_file, 0, SEEK_SET) != 0) fail();
  _size = static_cast<std::uint64_t>(size);
  _buffer.resize(kBufferSize);
  _window = _pos = _end = _buffer.data();
}

ByteInput::~ByteInput() {
  if (_file != nullptr) std::fclose(_file);
}

void ByteInput::fail() const {
  throw Quiltra::Exception("DicomFile::read",
                           "cannot read the file at offset " + std::to_string(offset()));
}

void ByteInput::fill(std::size_t n) {
  if (_file == nullptr || static_cast<std::size_t>(_end - _pos) >= n) return;
  const std::size_t kept = _end - _pos;
  const std::uint64_t start = offset();
  std::memmove(_buffer.data(), _pos, kept);
  const std::size_t wanted = static_cast<std::size_t>(
      std::min<std::uint64_t>(_buffer.size() - kept, _size - start - kept));
  const std::size_t got = std::fread(_buffer.data() + kept, 1, wanted, _file);
  if (got != wanted) fail();
  _window = _pos = _buffer.data();
  _end = _window + kept + got;
  _windowOffset = start;
}

void ByteInput::read(void* target, std::size_t n) {
  auto* out = static_cast<unsigned char*>(target);
  std::size_t visible = _end - _pos;
  if (n == 0) return;
  if (visible >= n) {
    std::memcpy(out, _pos, n);
    _pos += n;
    return;
  }
  if (_file == nullptr || n > remaining()) fail();
  // Take what the window holds, then read the rest straight from the file when it is
  // larger than the buffer, so that big values are copied once.
  std::memcpy(out, _pos, visible);
  _pos += visible;
  out += visible;
  n -= visible;
  if (n >= _buffer.size()) {
    const std::uint64_t start = offset();
    if (std::fread(out, 1, n, _file) != n) fail();
    _window = _pos = _end = _buffer.data();
    _windowOffset = start + n;
    return;
  }
  fill(n);
  std::memcpy(out, _pos, n);
  _pos += n;
}

void ByteInput::skip(std::uint64_t n) {
  if (n > remaining()) fail();
  const std::size_t visible = _end - _pos;
  if (n <= visible) {
    _pos += n;
    return;
  }
  const std::uint64_t target = offset() + n;
  if (std::fseek(_file, static_cast<long>(target), SEEK_SET) != 0) fail();
  _window = _pos = _end = _buffer.data();
  _windowOffset = target;
}

std::size_t ByteInput::peek(unsigned char* target, std::size_t n) {
  n = static_cast<std::size_t>(std::min<std::uint64_t>(std::min(n, kPeekMax), remaining()));
  if (n == 0) return 0;
  fill(n);
  std::memcpy(target, _pos, n);
  return n;
}

}  // namespace Quiltra_DicomFile
