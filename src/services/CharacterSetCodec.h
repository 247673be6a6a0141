#ifndef QUILTRA_SERVICES_CHARACTERSETCODEC_H_
#define QUILTRA_SERVICES_CHARACTERSETCODEC_H_

#include <cstddef>
#include <string>

// The buffer-level conversions behind Quiltra_Unicode, shared with the data-set conversion
// so that it can convert a stored value straight into its new buffer.

namespace Quiltra_Unicode {

/// What convertCharacterSet does for a pair of set names.
enum class Conversion { None, Latin1ToUTF8, UTF8ToLatin1 };

/// The conversion that convertCharacterSet(from, to, ...) applies; None when it answers false.
Conversion conversionBetween(const std::string& from, const std::string& to);

/// The index of the first byte from 0x80 up, or n when the text is pure ASCII.
std::size_t firstNonAscii(const unsigned char* bytes, std::size_t n) noexcept;

/// How many bytes encodeUTF8 writes for n Latin-1 bytes.
std::size_t utf8Size(const unsigned char* latin1, std::size_t n) noexcept;

/// Writes the UTF-8 form of n Latin-1 bytes, utf8Size(latin1, n) bytes, to out.
/// Requires: out does not overlap latin1.
void encodeUTF8(const unsigned char* latin1, std::size_t n, unsigned char* out) noexcept;

/// Writes the Latin-1 form of n UTF-8 bytes to out and returns how many it wrote (at most
/// n). out may be utf8 itself. Throws Exception("UTF8toLatin1", "source exhausted") when
/// the text ends inside a sequence; out then holds a partial result the caller discards.
std::size_t decodeUTF8(const unsigned char* utf8, std::size_t n, unsigned char* out);

}  // namespace Quiltra_Unicode

#endif  // QUILTRA_SERVICES_CHARACTERSETCODEC_H_
