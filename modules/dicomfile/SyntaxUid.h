#ifndef QUILTRA_MODULES_DICOMFILE_SYNTAXUID_H_
#define QUILTRA_MODULES_DICOMFILE_SYNTAXUID_H_

#include <optional>
#include <string>
#include <string_view>

#include <quiltra/core/TransferSyntax.h>

namespace Quiltra_DicomFile {

/// How a transfer syntax lays out the data set.
struct SyntaxLayout {
  bool explicitVr = true;
  bool bigEndian = false;
  bool deflated = false;
  /// Pixel data held as fragments (every syntax but the four native ones).
  bool encapsulated = false;
};

/// The layout of a syntax; IMPLICIT_BIG_ENDIAN is implicit VR in big-endian order.
SyntaxLayout layoutOf(Quiltra::TransferSyntax syntax);

/// The syntax named by a UID (trailing blanks and zero bytes ignored); empty for a UID
/// that names none of the library's syntaxes.
std::optional<Quiltra::TransferSyntax> syntaxOfUid(std::string_view uid);

/// The UID of a syntax; empty for IMPLICIT_BIG_ENDIAN and invalid codes, which have none.
std::string uidOfSyntax(Quiltra::TransferSyntax syntax);

}  // namespace Quiltra_DicomFile

#endif  // QUILTRA_MODULES_DICOMFILE_SYNTAXUID_H_
