/*
 * Latin-1 <-> UTF-8 over whole buffers.
 *
 * Latin-1 to UTF-8: a byte b below 0x80 stays; any other becomes 0xC0 | (b >> 6) and
 * 0x80 | (b & 0x3F).
 *
 * UTF-8 to Latin-1, driven by two tables:
 *   trailing bytes by lead byte   00..BF: 0  C0..DF: 1  E0..EF: 2  F0..F7: 3  F8..FB: 4  FC..FF: 5
 *   offset by trailing count      0, 00003080, 000E2080, 03C82080, FA082080, 82082080
 * For a lead byte with k trailing bytes: when fewer than k bytes follow, the text is
 * exhausted. With k of 1 to 3 the value is the lead byte with the k following bytes shifted
 * in six bits at a time (their 10xxxxxx form is not checked); with k of 4 or 5 it is 0 and
 * nothing more is consumed, so the following bytes are read again as lead bytes. Less the
 * offset (unsigned 32-bit), the value gives one output byte when it is at most 0xFF and "?"
 * otherwise. So stray continuation bytes are copied, overlong forms are accepted, and every
 * code point from 0x100 up, every 4-byte sequence and every lead byte F8..FF gives "?".
 *
 * Both directions first copy the pure-ASCII prefix as one block, found eight bytes at a time.
 */
#include "CharacterSetCodec.h"

#include <array>
#include <cstdint>
#include <cstring>

#include <quiltra/core/Exception.h>
#include <quiltra/services/Quiltra_Unicode.h>

namespace Quiltra_Unicode {

namespace {

constexpr std::uint64_t kHighBits = 0x8080808080808080ull;
constexpr std::uint64_t kLowBits = 0x0101010101010101ull;

constexpr std::array<unsigned char, 256> makeTrailingBytes() {
  std::array<unsigned char, 256> table{};
  for (unsigned int b = 0; b < 256; ++b) {
    table[b] = b < 0xC0 ? 0 : b < 0xE0 ? 1 : b < 0xF0 ? 2 : b < 0xF8 ? 3 : b < 0xFC ? 4 : 5;
  }
  return table;
}

constexpr std::array<unsigned char, 256> kTrailingBytes = makeTrailingBytes();
constexpr std::array<std::uint32_t, 6> kOffsets = {0x00000000u, 0x00003080u, 0x000E2080u,
                                                   0x03C82080u, 0xFA082080u, 0x82082080u};

std::uint64_t load64(const unsigned char* bytes) noexcept {
  std::uint64_t word;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

}  // namespace

Conversion conversionBetween(const std::string& from, const std::string& to) {
  if (from == to) return Conversion::None;
  const bool toLatin1 = to == isoLatin1CharacterSet() || to == defaultCharacterSet();
  if (from == UTF8CharacterSet()) return toLatin1 ? Conversion::UTF8ToLatin1 : Conversion::None;
  const bool fromLatin1 = from == isoLatin1CharacterSet() || from == defaultCharacterSet();
  if (fromLatin1 && to == UTF8CharacterSet()) return Conversion::Latin1ToUTF8;
  return Conversion::None;
}

std::size_t firstNonAscii(const unsigned char* bytes, std::size_t n) noexcept {
  std::size_t i = 0;
  while (i + 8 <= n && (load64(bytes + i) & kHighBits) == 0) i += 8;
  while (i < n && bytes[i] < 0x80) ++i;
  return i;
}

std::size_t utf8Size(const unsigned char* latin1, std::size_t n) noexcept {
  std::size_t size = n;
  std::size_t i = 0;
  // The high bits of a word, moved to the low bit of each byte, summed by one multiply.
  for (; i + 8 <= n; i += 8) {
    size += (((load64(latin1 + i) >> 7) & kLowBits) * kLowBits) >> 56;
  }
  for (; i < n; ++i) size += latin1[i] >> 7;
  return size;
}

void encodeUTF8(const unsigned char* latin1, std::size_t n, unsigned char* out) noexcept {
  const std::size_t ascii = firstNonAscii(latin1, n);
  if (ascii != 0) std::memcpy(out, latin1, ascii);
  out += ascii;
  for (std::size_t i = ascii; i < n; ++i) {
    const unsigned char b = latin1[i];
    if (b < 0x80) {
      *out++ = b;
      continue;
    }
    *out++ = static_cast<unsigned char>(0xC0 | (b >> 6));
    *out++ = static_cast<unsigned char>(0x80 | (b & 0x3F));
  }
}

// out may be utf8 itself: each output byte is written only after the bytes it is made of
// have been read, and never ahead of them.
std::size_t decodeUTF8(const unsigned char* utf8, std::size_t n, unsigned char* out) {
  std::size_t i = firstNonAscii(utf8, n);
  if (i != 0 && out != utf8) std::memmove(out, utf8, i);
  std::size_t written = i;
  while (i < n) {
    const unsigned char lead = utf8[i];
    const unsigned int trailing = kTrailingBytes[lead];
    if (trailing == 0) {
      out[written++] = lead;
      ++i;
      continue;
    }
    if (i + trailing >= n) throw Quiltra::Exception("UTF8toLatin1", "source exhausted");
    std::uint32_t code = 0;
    if (trailing <= 3) {
      code = lead;
      for (unsigned int k = 0; k < trailing; ++k) code = (code << 6) + utf8[++i];
    }
    code -= kOffsets[trailing];
    out[written++] = code <= 0xFF ? static_cast<unsigned char>(code) : '?';
    ++i;
  }
  return written;
}

}  // namespace Quiltra_Unicode
