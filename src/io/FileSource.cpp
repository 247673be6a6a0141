#include "quiltra/io/FileSource.h"

#include <quiltra/core/Exception.h>

namespace Quiltra_Serialization {

FileSource::FileSource(const std::string& path) : _file(std::fopen(path.c_str(), "rb")) {
  if (_file == nullptr) {
    throw Quiltra::Exception("FileSource::FileSource", "cannot open file for reading");
  }
}

FileSource::~FileSource() {
  if (_file != nullptr) std::fclose(_file);
}

void FileSource::readX(void* data, unsigned int size) {
  if (_file == nullptr) throw Quiltra::Exception("FileSource::readX", "no open file");
  // One item of size bytes: a 0-byte item is never "read whole", as fread reports.
  if (size == 0 || std::fread(data, size, 1, _file) != 1) {
    throw Quiltra::Exception("FileSource::readX", "cannot read from file");
  }
}

void FileSource::rewind() {
  if (_file == nullptr) throw Quiltra::Exception("FileSource::rewind", "no open file");
  if (std::fseek(_file, 0, SEEK_SET) != 0) {
    throw Quiltra::Exception("FileSource::rewind", "cannot fseek file");
  }
}

}  // namespace Quiltra_Serialization
