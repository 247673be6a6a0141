#include "quiltra/core/TransferSyntax.h"

#include <string_view>

namespace Quiltra {

namespace {

// Indexed by code - 1. Code 27 really is named "v".
constexpr std::string_view kSyntaxTexts[] = {"IMPLICIT_LITTLE_ENDIAN",
                                             "EXPLICIT_LITTLE_ENDIAN",
                                             "EXPLICIT_BIG_ENDIAN",
                                             "IMPLICIT_BIG_ENDIAN",
                                             "DEFLATED_EXPLICIT_LITTLE_ENDIAN",
                                             "RLE",
                                             "JPEG_BASELINE",
                                             "JPEG_EXTENDED_2_4",
                                             "JPEG_EXTENDED_3_5",
                                             "JPEG_SPEC_NON_HIER_6_8",
                                             "JPEG_SPEC_NON_HIER_7_9",
                                             "JPEG_FULL_PROG_NON_HIER_10_12",
                                             "JPEG_FULL_PROG_NON_HIER_11_13",
                                             "JPEG_LOSSLESS_NON_HIER_14",
                                             "JPEG_LOSSLESS_NON_HIER_15",
                                             "JPEG_EXTENDED_HIER_16_18",
                                             "JPEG_EXTENDED_HIER_17_19",
                                             "JPEG_SPEC_HIER_20_22",
                                             "JPEG_SPEC_HIER_21_23",
                                             "JPEG_FULL_PROG_HIER_24_26",
                                             "JPEG_FULL_PROG_HIER_25_27",
                                             "JPEG_LOSSLESS_HIER_28",
                                             "JPEG_LOSSLESS_HIER_29",
                                             "JPEG_LOSSLESS_HIER_14",
                                             "JPEG_2000_LOSSLESS_ONLY",
                                             "JPEG_2000",
                                             "v",
                                             "JPEG_LS_LOSSY",
                                             "MPEG2_MPML",
                                             "JPEG_2000_MC_LOSSLESS_ONLY",
                                             "JPEG_2000_MC"};
constexpr int kSyntaxCount = static_cast<int>(sizeof(kSyntaxTexts) / sizeof(kSyntaxTexts[0]));
static_assert(kSyntaxCount == JPEG_2000_MC, "one text per code from 1");

}  // namespace

std::string toString(TransferSyntax syntax) {
  if (syntax < IMPLICIT_LITTLE_ENDIAN || syntax > kSyntaxCount) return "INVALID_TRANSFER_SYNTAX";
  return std::string(kSyntaxTexts[syntax - 1]);
}

}  // namespace Quiltra
