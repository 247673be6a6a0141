#ifndef QUILTRA_IO_STREAMBYTES_H_
#define QUILTRA_IO_STREAMBYTES_H_

#include <istream>

namespace Quiltra_Utils {

/// Decodes up to n bytes of the printable stream form into bytes and returns how many
/// arrived; stops at the first failed character extraction, leaving the rest of bytes as
/// it was. The public fromStream(in, bytes, n) is this without the count.
unsigned int decodeBytes(std::istream& in, unsigned char* bytes, unsigned int n);

}  // namespace Quiltra_Utils

#endif  // QUILTRA_IO_STREAMBYTES_H_
