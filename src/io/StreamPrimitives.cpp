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

#include "StreamBytes.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace Quiltra_Utils {

namespace {

// Bytes encoded per ostream::write call, and bytes of a string decoded before the
// stream is asked whether it still holds data.
constexpr unsigned int kChunk = 4096;
constexpr unsigned int kStringChunk = 64 * 1024;

char highCharacter(unsigned char byte) {
  const unsigned int nibble = byte >> 4;
  return static_cast<char>(byte < 0x80 ? 0x30 + nibble : 0x20 + nibble);
}

char lowCharacter(unsigned char byte) {
  return static_cast<char>(0x30 + (byte & 0x0F));
}

void toStream32(std::ostream& out, std::uint32_t value) {
  unsigned char bytes[4];
  for (unsigned int i = 0; i < 4; ++i) bytes[i] = static_cast<unsigned char>(value >> (8 * i));
  toStream(out, bytes, 4);
}

// Missing bytes of a short stream stay zero.
std::uint32_t fromStream32(std::istream& in) {
  unsigned char bytes[4] = {0, 0, 0, 0};
  fromStream(in, bytes, 4);
  std::uint32_t value = 0;
  for (unsigned int i = 4; i > 0; --i) value = (value << 8) | bytes[i - 1];
  return value;
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
  const std::uint32_t bits = fromStream32(in);
  std::int32_t number = 0;
  std::memcpy(&number, &bits, sizeof number);
  value = number;
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
  // The length is untrusted: grow chunk by chunk while the stream still delivers, and let
  // the zero-filled tail of a short stream end the text like a zero byte would.
  for (std::uint32_t left = fromStream32(in); left > 0 && in.good();) {
    const std::uint32_t chunk = std::min(left, kStringChunk);
    const std::size_t filled = value.size();
    value.resize(filled + chunk);
    fromStream(in, reinterpret_cast<unsigned char*>(&value[filled]), chunk);
    left -= chunk;
  }
  const std::size_t zero = value.find('\0');
  if (zero != std::string::npos) value.resize(zero);
}

}  // namespace Quiltra_Utils
