#ifndef QUILTRA_IO_STREAMPRIMITIVES_H_
#define QUILTRA_IO_STREAMPRIMITIVES_H_

#include <istream>
#include <ostream>
#include <string>

#include <quiltra/core/Export.h>

/// The printable text stream form: every byte becomes two characters from 0x28 to 0x3F,
/// high part first; no separators. Readers skip white space, keep 8 bits per byte, and on
/// a short or damaged stream leave zero (false, empty) from the point where it ended.
namespace Quiltra_Utils {

/// n bytes, two characters each.
QUILTRA_EXPORT void toStream(std::ostream& out, const unsigned char* bytes, unsigned int n);
/// The 4 bytes least significant first: 8 characters.
QUILTRA_EXPORT void toStream(std::ostream& out, const int& value);
QUILTRA_EXPORT void toStream(std::ostream& out, const unsigned int& value);
/// One byte, 1 or 0: 2 characters.
QUILTRA_EXPORT void toStream(std::ostream& out, const bool& value);
/// The length as unsigned, then the bytes; nothing more for the empty string.
QUILTRA_EXPORT void toStream(std::ostream& out, const std::string& value);

/// Reads n bytes; stops at the first failed character extraction and leaves the rest
/// of bytes as it was.
QUILTRA_EXPORT void fromStream(std::istream& in, unsigned char* bytes, unsigned int n);
QUILTRA_EXPORT void fromStream(std::istream& in, int& value);
QUILTRA_EXPORT void fromStream(std::istream& in, unsigned int& value);
QUILTRA_EXPORT void fromStream(std::istream& in, bool& value);
/// Cut at the first zero byte. The length read is never trusted: the text grows with
/// the bytes actually read.
QUILTRA_EXPORT void fromStream(std::istream& in, std::string& value);

}  // namespace Quiltra_Utils

#endif  // QUILTRA_IO_STREAMPRIMITIVES_H_
