// Feeds arbitrary bytes to both readers of a Message: an odd first byte picks the binary
// form, an even one the text form. Reading must end in a message or (binary only) a
// Quiltra::Exception; whatever is read must write and read back to the same encoding, and
// its texts must convert to UTF-8 and back or fail with an Exception.
#include "FuzzTarget.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include <quiltra/quiltra.h>

namespace {

using Quiltra::Message;
using QuiltraFuzz::binaryOf;
using QuiltraFuzz::textOf;

bool readBinary(const std::string& bytes, Message& message) {
  Quiltra_Serialization::MemorySource source(
      std::vector<unsigned char>(bytes.begin(), bytes.end()));
  try {
    message.deserializeX(source);
  } catch (const Quiltra::Exception&) {
    return false;
  }
  return true;
}

void readText(const std::string& text, Message& message) {
  std::istringstream in(text);
  message.fromStream(in);
}

void convertBothWays(const Message& message) {
  Message copy(message);
  try {
    copy.convertToCharacterSet(Quiltra_Unicode::UTF8CharacterSet());
    copy.convertToCharacterSet(Quiltra_Unicode::isoLatin1CharacterSet());
  } catch (const Quiltra::Exception&) {
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string body(reinterpret_cast<const char*>(data) + 1, size - 1);
  Message message, again;
  if (data[0] & 1) {
    if (!readBinary(body, message)) return 0;
    const std::string written = binaryOf(message);
    if (!readBinary(written, again) || binaryOf(again) != written) std::abort();
  } else {
    readText(body, message);
    const std::string written = textOf(message);
    readText(written, again);
    if (textOf(again) != written) std::abort();
  }
  convertBothWays(message);
  return 0;
}
