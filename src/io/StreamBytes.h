#ifndef QUILTRA_IO_STREAMBYTES_H_
#define QUILTRA_IO_STREAMBYTES_H_

#include <istream>

namespace Quiltra_Utils {

/// Decodes up to n bytes of the printable stream form into bytes and returns how many
/// arrived; stops at the first failed character extraction, leaving the rest of bytes as
/// it was. The public fromStream(in, bytes, n) is this without the count.
unsigned int decodeBytes(std::istream& in, unsigned char* bytes, unsigned int n);

/// Turns the caller's exception mask off while a reader works on the stream, so that a
/// failed extraction only sets the state, as on a stream without a mask, and puts the mask
/// back afterwards without throwing. Every text reader thus reports a short stream the same
/// way, through the state, whatever the mask.
class ExceptionMaskOff {
 public:
  explicit ExceptionMaskOff(std::istream& in) : _in(in), _mask(in.exceptions()) {
    if (_mask != std::ios::goodbit) _in.exceptions(std::ios::goodbit);  // cannot throw
  }
  ~ExceptionMaskOff() {
    if (_mask == std::ios::goodbit) return;
    try {
      _in.exceptions(_mask);  // sets the mask, then throws if the state matches it
    } catch (...) {
      // The mask is back. Not every std::ios_base::failure the library throws can be
      // caught by that name, hence the catch-all; nothing else is thrown here.
    }
  }
  ExceptionMaskOff(const ExceptionMaskOff&) = delete;
  ExceptionMaskOff& operator=(const ExceptionMaskOff&) = delete;

 private:
  std::istream& _in;
  std::ios::iostate _mask;
};

}  // namespace Quiltra_Utils

#endif  // QUILTRA_IO_STREAMBYTES_H_
