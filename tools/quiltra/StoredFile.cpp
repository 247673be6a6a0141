#include "StoredFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include <quiltra/core/Exception.h>
#include <quiltra/io/FileSource.h>
#include <quiltra/io/MemorySink.h>

namespace QuiltraTools {

namespace {

using Quiltra::Exception;

// How many leading bytes decide the form: a binary data set starts with a 4-byte type
// code, whose high bytes are zero.
constexpr std::size_t kProbeSize = 8;

std::string systemError(const std::string& what, const std::string& path) {
  return what + " " + path + ": " + std::strerror(errno);
}

// Writes all of bytes to fd and flushes them to the disk; false on any error, with errno.
bool writeAll(int fd, const std::string& bytes) {
  for (std::size_t done = 0; done < bytes.size();) {
    const ssize_t written = ::write(fd, bytes.data() + done, bytes.size() - done);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    done += static_cast<std::size_t>(written);
  }
  return ::fsync(fd) == 0;
}

// mkstemp makes its file private; a written file gets the usual permissions instead.
bool allowAsUsual(int fd) {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return ::fchmod(fd, 0666 & ~mask) == 0;
}

std::string encode(const Quiltra::Message& message, StorageForm form) {
  if (form == StorageForm::Text) {
    std::ostringstream text;
    message.toStream(text);
    return text.str();
  }
  Quiltra_Serialization::MemorySink sink;
  message.serializeX(sink);
  return std::string(sink.bytes().begin(), sink.bytes().end());
}

}  // namespace

StorageForm toStorageForm(const std::string& name) {
  if (name == "binary") return StorageForm::Binary;
  if (name == "text") return StorageForm::Text;
  throw Exception("toStorageForm", "unknown storage form " + name);
}

StorageForm detectForm(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw Exception("detectForm", systemError("cannot open", path));
  char probe[kProbeSize];
  in.read(probe, kProbeSize);
  const std::streamsize read = in.gcount();
  if (read == 0) throw Exception("detectForm", path + " is empty");
  for (std::streamsize i = 0; i < read; ++i) {
    const auto byte = static_cast<unsigned char>(probe[i]);
    if (byte < 0x28 || byte > 0x3F) return StorageForm::Binary;
  }
  return StorageForm::Text;
}

std::shared_ptr<Quiltra::Message> readStored(const std::string& path) {
  auto message = std::make_shared<Quiltra::Message>();
  if (detectForm(path) == StorageForm::Text) {
    std::ifstream in(path, std::ios::binary);
    message->fromStream(in);
    return message;
  }
  Quiltra_Serialization::FileSource source(path);
  message->deserializeX(source);
  return message;
}

void writeStored(const std::string& path, const Quiltra::Message& message, StorageForm form) {
  const std::string bytes = encode(message, form);
  std::string temporary = path + ".tmp-XXXXXX";
  const int fd = ::mkstemp(temporary.data());
  if (fd < 0) throw Exception("writeStored", systemError("cannot create a file beside", path));
  bool done = allowAsUsual(fd) && writeAll(fd, bytes);
  std::string failure = done ? "" : systemError("cannot write", path);
  done = ::close(fd) == 0 && done;
  if (done && std::rename(temporary.c_str(), path.c_str()) == 0) return;
  if (failure.empty()) failure = systemError("cannot write", path);
  std::remove(temporary.c_str());
  throw Exception("writeStored", failure);
}

}  // namespace QuiltraTools
