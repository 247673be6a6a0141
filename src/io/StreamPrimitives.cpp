/*
 * The printable text form. A byte b becomes two characters, high part first:
 *
 *   high: 0x30 + (b >> 4) for b < 0x80, 0x20 + (b >> 4) for b >= 0x80
 *         (b as a signed 8-bit number shifted right with its sign: "0".."7", "(".."/")
 *   low:  0x30 + (b & 0x0F)                                          ("0".."?")
 *
 * Decoding takes two characters, white space skipped as formatted extraction skips it, and
 * keeps ((c1 - 0x30) << 4) + (c2 - 0x30) to 8 bits, so "8".."?" and "(".."/" give the same
 * high nibble. Both directions work on whole chunks: the writer encodes through a table of
 * the 256 character pairs into one buffer per write, and the reader takes characters from
 * the stream buffer in blocks, never more than the bytes still wanted need, so it consumes
 * exactly what character-by-character extraction would.
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
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ios>
#include <locale>
#include <streambuf>

namespace Quiltra_Utils {

namespace {

// Bytes encoded per ostream::write call, and characters taken per stream buffer read.
constexpr unsigned int kChunk = 4096;

constexpr char highCharacter(unsigned int byte) {
  const unsigned int nibble = byte >> 4;
  return static_cast<char>(byte < 0x80 ? 0x30 + nibble : 0x20 + nibble);
}

constexpr char lowCharacter(unsigned int byte) {
  return static_cast<char>(0x30 + (byte & 0x0F));
}

// The two characters of every byte, high first.
struct PairTable {
  char text[2 * 256];
};

constexpr PairTable makePairTable() {
  PairTable table{};
  for (unsigned int byte = 0; byte < 256; ++byte) {
    table.text[2 * byte] = highCharacter(byte);
    table.text[2 * byte + 1] = lowCharacter(byte);
  }
  return table;
}

constexpr PairTable kPairs = makePairTable();

// Unsigned arithmetic: characters below 0x30 wrap instead of overflowing.
unsigned char decodePair(char high, char low) {
  const unsigned int highPart = static_cast<unsigned char>(high) - 0x30u;
  const unsigned int lowPart = static_cast<unsigned char>(low) - 0x30u;
  return static_cast<unsigned char>(((highPart << 4) + lowPart) & 0xFFu);
}

// The characters the writer puts, 0x28 to 0x3F.
bool isFormCharacter(char c) {
  return static_cast<unsigned int>(static_cast<unsigned char>(c)) - 0x28u <= 0x17u;
}

// White space as the stream's formatted extraction sees it. The characters of the form,
// 0x28 to 0x3F, are taken as never being white space, so the locale is consulted only for
// others.
class WhiteSpace {
 public:
  explicit WhiteSpace(std::istream& in) : _in(in), _skip((in.flags() & std::ios::skipws) != 0) {}
  bool operator()(char c) {
    if (!_skip || isFormCharacter(c)) return false;
    if (_ctype == nullptr) _ctype = &std::use_facet<std::ctype<char>>(_in.getloc());
    return _ctype->is(std::ctype_base::space, c);
  }

 private:
  std::istream& _in;
  bool _skip;
  const std::ctype<char>* _ctype = nullptr;
};

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
    for (unsigned int i = 0; i < count; ++i)
      std::memcpy(text + 2 * i, kPairs.text + 2 * bytes[i], 2);
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

// One sentry for the whole read (it flushes a tied stream and fails a stream that is not
// good, as each extraction's would); then characters come from the stream buffer in blocks
// of at most the characters still wanted, so nothing past the last byte is consumed. The end
// of the input sets eofbit and failbit, an exception of the buffer badbit, as formatted
// extraction does.
unsigned int decodeBytes(std::istream& in, unsigned char* bytes, unsigned int n) {
  if (n == 0) return 0;
  const ExceptionMaskOff maskOff(in);
  const std::istream::sentry sentry(in, true);
  if (!sentry) return 0;
  std::streambuf* buffer = in.rdbuf();
  WhiteSpace isWhite(in);
  char text[kChunk];
  unsigned int done = 0;
  bool haveHigh = false;
  char high = 0;
  try {
    while (done < n) {
      const std::size_t wanted = 2 * static_cast<std::size_t>(n - done) - (haveHigh ? 1 : 0);
      const auto asked = static_cast<std::streamsize>(std::min<std::size_t>(wanted, kChunk));
      const std::streamsize got = buffer->sgetn(text, asked);
      for (std::streamsize i = 0; i < got;) {
        if (!haveHigh) {
          // Whole pairs of the form's characters, the common case, need no other test.
          for (; i + 1 < got && isFormCharacter(text[i]) && isFormCharacter(text[i + 1]); i += 2) {
            bytes[done++] = decodePair(text[i], text[i + 1]);
          }
          if (i >= got) break;
        }
        const char c = text[i++];
        if (isWhite(c)) continue;
        if (haveHigh) bytes[done++] = decodePair(high, c);
        high = c;
        haveHigh = !haveHigh;
      }
      if (got < asked) {
        in.setstate(std::ios::eofbit | std::ios::failbit);
        break;
      }
    }
  } catch (...) {
    in.setstate(std::ios::badbit);  // the mask is off: this does not throw
  }
  return done;
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
