#include "StoredFile.h"

#include "Modules.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

#include <quiltra/core/Exception.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/io/FileSource.h>
#include <quiltra/io/MemorySink.h>

namespace QuiltraTools {

namespace {

using Quiltra::Exception;

// A DICOM file's "DICM" follows a 128-byte preamble.
constexpr std::size_t kPreamble = 128;
constexpr char kDicomMagic[] = "DICM";
// The binary form starts with the code of its first field, a string: 09 00 00 00.
constexpr char kBinaryStart[] = {0x09, 0x00, 0x00, 0x00};
// How many leading bytes must all be text-stream characters.
constexpr std::size_t kTextProbe = 8;

const std::map<std::string, Quiltra::TransferSyntax>& syntaxNames() {
  static const std::map<std::string, Quiltra::TransferSyntax> names = {
      {"implicit-le", Quiltra::IMPLICIT_LITTLE_ENDIAN},
      {"explicit-le", Quiltra::EXPLICIT_LITTLE_ENDIAN},
      {"explicit-be", Quiltra::EXPLICIT_BIG_ENDIAN},
      {"deflated", Quiltra::DEFLATED_EXPLICIT_LITTLE_ENDIAN}};
  return names;
}

std::string systemError(const std::string& what, const std::string& path) {
  return what + " " + path + ": " + std::strerror(errno);
}

// Writes all of bytes to the file at path and flushes them to the disk; false on any
// error, with errno.
bool writeAll(const std::string& path, const std::string& bytes) {
  const int fd = ::open(path.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
  if (fd < 0) return false;
  bool done = true;
  for (std::size_t written = 0; done && written < bytes.size();) {
    const ssize_t count = ::write(fd, bytes.data() + written, bytes.size() - written);
    if (count < 0 && errno == EINTR) continue;
    done = count > 0;
    if (done) written += static_cast<std::size_t>(count);
  }
  done = done && ::fsync(fd) == 0;
  return ::close(fd) == 0 && done;
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

// Has write fill a fresh temporary file beside path, gives it the permissions a new file
// gets (mkstemp makes it private), and renames it over path. On any failure the temporary
// file goes and path stays as it was.
void replaceBeside(const std::string& path, const std::function<void(const std::string&)>& write) {
  std::string temporary = path + ".tmp-XXXXXX";
  const int fd = ::mkstemp(temporary.data());
  if (fd < 0) throw Exception("writeStored", systemError("cannot create a file beside", path));
  ::close(fd);
  try {
    write(temporary);
    const mode_t mask = ::umask(0);
    ::umask(mask);
    if (::chmod(temporary.c_str(), 0666 & ~mask) != 0 ||
        std::rename(temporary.c_str(), path.c_str()) != 0) {
      throw Exception("writeStored", systemError("cannot write", path));
    }
  } catch (...) {
    std::remove(temporary.c_str());
    throw;
  }
}

// Up to count leading bytes of the file. Throws Exception when it cannot be opened.
std::string firstBytes(const std::string& path, std::size_t count) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw Exception("detectForm", systemError("cannot open", path));
  std::string bytes(count, '\0');
  in.read(bytes.data(), static_cast<std::streamsize>(count));
  bytes.resize(static_cast<std::size_t>(in.gcount()));
  return bytes;
}

bool hasPreamble(const std::string& probe) {
  return probe.size() == kPreamble + 4 && probe.compare(kPreamble, 4, kDicomMagic) == 0;
}

std::shared_ptr<Quiltra::Message> readDicom(const std::string& path) {
  auto message = dicomReader()->readFile(path, nullptr);
  // Anything not in the other forms comes here, and the reader stops tolerantly at what
  // cannot start an element: refuse a file that yields nothing.
  if (std::as_const(*message).tags()->tagsSize() == 0) {
    throw Exception("detectForm", "neither a stored message nor a DICOM file");
  }
  return message;
}

}  // namespace

StorageForm toStorageForm(const std::string& name) {
  if (name == "binary") return StorageForm::Binary;
  if (name == "text") return StorageForm::Text;
  if (name == "dicom") return StorageForm::Dicom;
  throw Exception("toStorageForm", "unknown storage form " + name);
}

Quiltra::TransferSyntax toSyntax(const std::string& name) {
  const auto found = syntaxNames().find(name);
  if (found == syntaxNames().end()) throw Exception("toSyntax", "unknown syntax " + name);
  return found->second;
}

StorageForm detectForm(const std::string& path) {
  const std::string probe = firstBytes(path, kPreamble + 4);
  if (probe.empty()) throw Exception("detectForm", path + " is empty");
  const std::size_t read = probe.size();
  if (hasPreamble(probe)) return StorageForm::Dicom;
  if (read >= 4 && std::memcmp(probe.data(), kBinaryStart, 4) == 0) return StorageForm::Binary;
  for (std::size_t i = 0; i < read && i < kTextProbe; ++i) {
    const auto byte = static_cast<unsigned char>(probe[i]);
    if (byte < 0x28 || byte > 0x3F) return StorageForm::Dicom;
  }
  return StorageForm::Text;
}

StoredMessage readStored(const std::string& path) {
  const StorageForm form = detectForm(path);
  try {
    if (form == StorageForm::Dicom) return {readDicom(path), form};
    auto message = std::make_shared<Quiltra::Message>();
    if (form == StorageForm::Text) {
      std::ifstream in(path, std::ios::binary);
      message->fromStream(in);
      return {message, form};
    }
    Quiltra_Serialization::FileSource source(path);
    message->deserializeX(source);
    return {message, form};
  } catch (const Exception& error) {
    // The readers' messages say what and where, not which file.
    throw Exception(error, "readStored", "cannot read " + path);
  }
}

void writeStored(const std::string& path, const std::shared_ptr<Quiltra::Message>& message,
                 StorageForm form) {
  if (form == StorageForm::Dicom) {
    const auto writer = dicomWriter();
    return replaceBeside(path, [&](const std::string& temporary) {
      writer->writeFile(temporary, nullptr, message);
    });
  }
  const std::string bytes = encode(*message, form);
  replaceBeside(path, [&](const std::string& temporary) {
    if (!writeAll(temporary, bytes)) {
      throw Exception("writeStored", systemError("cannot write", path));
    }
  });
}

void addOutputOptions(CLI::App& parser, OutputChoice& choice) {
  CLI::Option* form =
      parser.add_option("--form", choice.form, "The storage form to write (default: as read)")
          ->check(CLI::IsMember({"binary", "text", "dicom"}));
  std::vector<std::string> syntaxes;
  for (const auto& entry : syntaxNames()) syntaxes.push_back(entry.first);
  parser
      .add_option("--syntax", choice.syntax,
                  "Write a DICOM file in this transfer syntax (default: as read)")
      ->check(CLI::IsMember(syntaxes))
      ->each([form](const std::string&) {
        if (form->count() > 0 && form->as<std::string>() != "dicom") {
          throw CLI::ValidationError("--syntax", "only DICOM files have a transfer syntax");
        }
      });
}

void writeChosen(const std::string& path, const StoredMessage& read, const OutputChoice& choice) {
  const StorageForm form = !choice.syntax.empty() ? StorageForm::Dicom
                           : choice.form.empty()  ? read.form
                                                  : toStorageForm(choice.form);
  if (choice.syntax.empty()) return writeStored(path, read.message, form);
  // The message's syntax says how a DICOM writer encodes it.
  auto message = std::make_shared<Quiltra::Message>(read.message->specificCharacterSet(),
                                                    toSyntax(choice.syntax));
  message->setTags(read.message->tags());
  writeStored(path, message, form);
}

}  // namespace QuiltraTools
