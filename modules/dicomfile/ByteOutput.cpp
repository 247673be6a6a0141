#include "ByteOutput.h"

#include <algorithm>

#include <quiltra/core/Exception.h>

namespace Quiltra_DicomFile {

namespace {
[[noreturn]] void writeFailed(const std::string& what) {
  throw Quiltra::Exception("DicomFile::write", what);
}
}  // namespace

ByteOutput::ByteOutput(const std::string& path) : _file(std::fopen(path.c_str(), "wb")) {
  if (_file == nullptr) writeFailed("cannot create " + path);
  _buffer.reserve(kBufferSize);
}

ByteOutput::~ByteOutput() {
  if (_file != nullptr) std::fclose(_file);
}

void ByteOutput::flush() {
  if (_buffer.empty()) return;
  if (std::fwrite(_buffer.data(), 1, _buffer.size(), _file) != _buffer.size()) {
    writeFailed("cannot write the file");
  }
  _written += _buffer.size();
  _buffer.clear();
}

void ByteOutput::write(const void* data, std::size_t n) {
  const auto* bytes = static_cast<const unsigned char*>(data);
  if (_memory != nullptr) {
    _memory->insert(_memory->end(), bytes, bytes + n);
    _written += n;
    return;
  }
  if (_file == nullptr) writeFailed("the file is closed");
  if (_buffer.size() + n <= kBufferSize) {
    _buffer.insert(_buffer.end(), bytes, bytes + n);
    return;
  }
  flush();
  if (n >= kBufferSize) {
    if (std::fwrite(bytes, 1, n, _file) != n) writeFailed("cannot write the file");
    _written += n;
    return;
  }
  _buffer.insert(_buffer.end(), bytes, bytes + n);
}

void ByteOutput::writeSwapped(const unsigned char* data, std::size_t n, std::size_t width) {
  unsigned char chunk[4096];
  const std::size_t step = sizeof chunk - sizeof chunk % width;
  for (std::size_t done = 0; done < n;) {
    const std::size_t count = std::min(step, n - done);
    for (std::size_t i = 0; i < count; i += width) {
      std::reverse_copy(data + done + i, data + done + i + width, chunk + i);
    }
    write(chunk, count);
    done += count;
  }
}

void ByteOutput::close() {
  if (_file == nullptr) return;
  flush();
  std::FILE* file = _file;
  _file = nullptr;
  if (std::fclose(file) != 0) writeFailed("cannot close the file");
}

}  // namespace Quiltra_DicomFile
