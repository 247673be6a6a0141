#ifndef QUILTRA_CORE_TRANSFERSYNTAX_H_
#define QUILTRA_CORE_TRANSFERSYNTAX_H_

#include <string>

#include <quiltra/core/Export.h>

namespace Quiltra {

/// Transfer syntaxes with fixed codes 1 to 31; every other code is invalid.
/// The codes are stored by both storage forms: never renumber.
enum TransferSyntax : int {
  IMPLICIT_LITTLE_ENDIAN = 1,
  EXPLICIT_LITTLE_ENDIAN = 2,
  EXPLICIT_BIG_ENDIAN = 3,
  IMPLICIT_BIG_ENDIAN = 4,
  DEFLATED_EXPLICIT_LITTLE_ENDIAN = 5,
  RLE = 6,
  JPEG_BASELINE = 7,
  JPEG_EXTENDED_2_4 = 8,
  JPEG_EXTENDED_3_5 = 9,
  JPEG_SPEC_NON_HIER_6_8 = 10,
  JPEG_SPEC_NON_HIER_7_9 = 11,
  JPEG_FULL_PROG_NON_HIER_10_12 = 12,
  JPEG_FULL_PROG_NON_HIER_11_13 = 13,
  JPEG_LOSSLESS_NON_HIER_14 = 14,
  JPEG_LOSSLESS_NON_HIER_15 = 15,
  JPEG_EXTENDED_HIER_16_18 = 16,
  JPEG_EXTENDED_HIER_17_19 = 17,
  JPEG_SPEC_HIER_20_22 = 18,
  JPEG_SPEC_HIER_21_23 = 19,
  JPEG_FULL_PROG_HIER_24_26 = 20,
  JPEG_FULL_PROG_HIER_25_27 = 21,
  JPEG_LOSSLESS_HIER_28 = 22,
  JPEG_LOSSLESS_HIER_29 = 23,
  JPEG_LOSSLESS_HIER_14 = 24,
  JPEG_2000_LOSSLESS_ONLY = 25,
  JPEG_2000 = 26,
  JPEG_LS_LOSSLESS = 27,  // printed as "v"
  JPEG_LS_LOSSY = 28,
  MPEG2_MPML = 29,
  JPEG_2000_MC_LOSSLESS_ONLY = 30,
  JPEG_2000_MC = 31
};

/// The name of codes 1 to 31 (code 27 prints as "v"); "INVALID_TRANSFER_SYNTAX" otherwise.
QUILTRA_EXPORT std::string toString(TransferSyntax syntax);

}  // namespace Quiltra

#endif  // QUILTRA_CORE_TRANSFERSYNTAX_H_
