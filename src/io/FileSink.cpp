#include "quiltra/io/FileSink.h"

#include <quiltra/core/Exception.h>

namespace Quiltra_Serialization {

FileSink::FileSink(const std::string& path) : _file(std::fopen(path.c_str(), "wb+")) {
  if (_file == nullptr)
    throw Quiltra::Exception("FileSink::FileSink", "cannot open file for writing");
}

FileSink::~FileSink() {
  if (_file != nullptr) std::fclose(_file);
}

void FileSink::writeX(const void* data, unsigned int size) {
  if (_file == nullptr) throw Quiltra::Exception("FileSink::writeX", "not open file");
  // One item of size bytes: a 0-byte item is never "written whole", as fwrite reports.
  if (size == 0 || std::fwrite(data, size, 1, _file) != 1) {
    throw Quiltra::Exception("FileSink::writeX", "cannot write to file");
  }
}

}  // namespace Quiltra_Serialization
