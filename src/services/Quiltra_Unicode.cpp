#include "quiltra/services/Quiltra_Unicode.h"

#include "CharacterSetCodec.h"

#include <string>
#include <utility>

#include <quiltra/core/Exception.h>

namespace Quiltra_Unicode {

namespace {

const unsigned char* bytesOf(const std::string& text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

unsigned char* bytesOf(std::string& text) {
  return reinterpret_cast<unsigned char*>(text.data());
}

std::string unsupported(const std::string& characterSet) {
  return "UNSUPPORTED CHARACTERSET " + characterSet;
}

}  // namespace

// Function-local statics: built on first use, thread-safely.
const std::string& defaultCharacterSet() {
  static const std::string kName("ISO_IR 6");
  return kName;
}

const std::string& isoLatin1CharacterSet() {
  static const std::string kName("ISO_IR 100");
  return kName;
}

const std::string& UTF8CharacterSet() {
  static const std::string kName("ISO_IR 192");
  return kName;
}

std::string latin1ToUTF8(const std::string& latin1) {
  const std::size_t size = utf8Size(bytesOf(latin1), latin1.size());
  if (size == latin1.size()) return latin1;
  std::string utf8(size, '\0');
  encodeUTF8(bytesOf(latin1), latin1.size(), bytesOf(utf8));
  return utf8;
}

std::string UTF8toLatin1(const std::string& utf8) {
  if (firstNonAscii(bytesOf(utf8), utf8.size()) == utf8.size()) return utf8;
  std::string latin1(utf8.size(), '\0');
  latin1.resize(decodeUTF8(bytesOf(utf8), utf8.size(), bytesOf(latin1)));
  return latin1;
}

std::string defaultToUTF8(const std::string& text) {
  return latin1ToUTF8(text);
}

std::string toLatin1(const std::string& characterSet, const std::string& text) {
  if (characterSet == defaultCharacterSet() || characterSet == isoLatin1CharacterSet()) {
    return text;
  }
  if (characterSet == UTF8CharacterSet()) return UTF8toLatin1(text);
  throw Quiltra::Exception("toLatin1", unsupported(characterSet));
}

std::string toUTF8(const std::string& characterSet, const std::string& text) {
  if (characterSet == defaultCharacterSet()) return defaultToUTF8(text);
  if (characterSet == isoLatin1CharacterSet()) return latin1ToUTF8(text);
  if (characterSet == UTF8CharacterSet()) return text;
  throw Quiltra::Exception("toUTF8", unsupported(characterSet));
}

std::string toDefault(const std::string& characterSet, const std::string& text) {
  return toLatin1(characterSet, text);
}

// A pure-ASCII text reads the same in every set, so it is left as it is, unallocated.
bool convertCharacterSet(const std::string& from, const std::string& to, std::string& text) {
  const Conversion conversion = conversionBetween(from, to);
  if (conversion == Conversion::None) return false;
  if (firstNonAscii(bytesOf(text), text.size()) == text.size()) return true;
  std::string converted =
      conversion == Conversion::Latin1ToUTF8 ? latin1ToUTF8(text) : UTF8toLatin1(text);
  text = std::move(converted);
  return true;
}

}  // namespace Quiltra_Unicode
