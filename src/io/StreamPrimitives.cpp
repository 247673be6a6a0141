/*
 * The printable text form. A byte b becomes two characters, high part first:
 *
 *   high: 0x30 + (b >> 4) for b < 0x80, 0x20 + (b >> 4) for b >= 0x80
 *         (b as a signed 8-bit number shifted right with its sign: "0".."7", "(".."/")
 *   low:  0x30 + (b & 0x0F)                                          ("0".."?")
 *
 * Decoding takes two characters with formatted extraction (white space skipped) and keeps
 * ((c1 - 0x30) << 4) + (c2 - 0x30) to 8 bits, so "8".."?" and "(".."/" give the same
 * high nibble.
 *
 *   int, unsigned   4 bytes, least significant first (8 characters)
 *   bool            1 byte, 1 or 0 (2 characters)
 *   string          length L as unsigned, then the L bytes (nothing more when L is 0)
 */
#include "quiltra/io/StreamPrimitives.h"

#include "ChunkedRead.h"
#include "LittleEndian.h"
#include "StreamBytes.h"

#include <algorithm>
#include <cstdint>

namespace Quiltra_Utils {

namespace {

// Bytes encoded per ostream::write call.
constexpr unsigned int kChunk = 4096;

char highCharacter(unsigned char byte) {
  const unsigned int nibble = byte >> 4;
  return static_cast<char>(byte < 0x80 ? 0x30 + nibble : 0x20 + nibble);
}

char lowCharacter(unsigned char byte) {
  return static_cast<char>(0x30 + (byte & 0x0F));
}

void toStream32(std::ostream& out, std::uint32_t value) {
  unsigned char bytes[4];
  Quiltra::storeLittleEndian(value, bytes, 4);
  toStream(out, bytes, 4);
}

// Missing bytes of a short stream stay zero.
std::uint32_t fromStream32(std::istream& in) {
  unsigned char bytes[4] = {0, 0, 0, 0};
  fromStream(in, bytes, 4);
  return static_cast<std::uint32_t>(Quiltra::loadLittleEndian(bytes, 4));
}

}  // namespace

void toStream(std::ostream& out, const unsigned char* bytes, unsigned int n) {
  char text[2 * kChunk];
  while (n > 0) {
    const unsigned int count = std::min(n, kChunk);
    for (unsigned int i = 0; i < count; ++i) {
      text[2 * i] = highCharacter(bytes[i]);
      text[2 * i + 1] = lowCharacter(bytes[i]);
    }
    out.write(text, 2 * static_cast<std::streamsize>(count));
    bytes += count;
    n -= count;
  }
}

void toStream(std::ostream& out, const int& value) {
  toStream32(out, static_cast<std::uint32_t>(value));
}

void toStream(std::ostream& out, const unsigned int& value) {
  toStream32(out, value);
}

void toStream(std::ostream& out, const bool& value) {
  const unsigned char byte = value ? 1 : 0;
  toStream(out, &byte, 1);
}

void toStream(std::ostream& out, const std::string& value) {
  const auto length = static_cast<std::uint32_t>(value.size());
  toStream32(out, length);
  toStream(out, reinterpret_cast<const unsigned char*>(value.data()), length);
}

unsigned int decodeBytes(std::istream& in, unsigned char* bytes, unsigned int n) {
  const ExceptionMaskOff maskOff(in);
  for (unsigned int i = 0; i < n; ++i) {
    char high = 0;
    char low = 0;
    if (!(in >> high >> low)) return i;
    // Unsigned arithmetic: characters below 0x30 wrap instead of overflowing.
    const unsigned int highPart = static_cast<unsigned char>(high) - 0x30u;
    const unsigned int lowPart = static_cast<unsigned char>(low) - 0x30u;
    bytes[i] = static_cast<unsigned char>(((highPart << 4) + lowPart) & 0xFFu);
  }
  return n;
}

void fromStream(std::istream& in, unsigned char* bytes, unsigned int n) {
  decodeBytes(in, bytes, n);
}

void fromStream(std::istream& in, int& value) {
  value = Quiltra::toSigned32(fromStream32(in));
}

void fromStream(std::istream& in, unsigned int& value) {
  value = fromStream32(in);
}

void fromStream(std::istream& in, bool& value) {
  unsigned char byte = 0;
  fromStream(in, &byte, 1);
  value = byte != 0;
}

void fromStream(std::istream& in, std::string& value) {
  value.clear();
  // The length is untrusted: grow chunk by chunk while the stream still delivers; a short
  // stream ends the text where it ends.
  const std::uint32_t length = fromStream32(in);
  if (!in) return;
  Quiltra::appendChunked(value, length, [&in](char* at, std::size_t n) {
    return decodeBytes(in, reinterpret_cast<unsigned char*>(at), static_cast<unsigned int>(n));
  });
  const std::size_t zero = value.find('\0');
  if (zero != std::string::npos) value.resize(zero);
}

}  // namespace Quiltra_Utils
