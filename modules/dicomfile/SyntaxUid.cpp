#include "SyntaxUid.h"

#include <iterator>

namespace Quiltra_DicomFile {

namespace {

struct SyntaxEntry {
  Quiltra::TransferSyntax syntax;
  const char* uid;
};

// Every syntax code the library names, with the UID of the standard's registry.
constexpr SyntaxEntry kSyntaxes[] = {
    {Quiltra::IMPLICIT_LITTLE_ENDIAN, "1.2.840.10008.1.2"},
    {Quiltra::EXPLICIT_LITTLE_ENDIAN, "1.2.840.10008.1.2.1"},
    {Quiltra::EXPLICIT_BIG_ENDIAN, "1.2.840.10008.1.2.2"},
    {Quiltra::DEFLATED_EXPLICIT_LITTLE_ENDIAN, "1.2.840.10008.1.2.1.99"},
    {Quiltra::RLE, "1.2.840.10008.1.2.5"},
    {Quiltra::JPEG_BASELINE, "1.2.840.10008.1.2.4.50"},
    {Quiltra::JPEG_EXTENDED_2_4, "1.2.840.10008.1.2.4.51"},
    {Quiltra::JPEG_EXTENDED_3_5, "1.2.840.10008.1.2.4.52"},
    {Quiltra::JPEG_SPEC_NON_HIER_6_8, "1.2.840.10008.1.2.4.53"},
    {Quiltra::JPEG_SPEC_NON_HIER_7_9, "1.2.840.10008.1.2.4.54"},
    {Quiltra::JPEG_FULL_PROG_NON_HIER_10_12, "1.2.840.10008.1.2.4.55"},
    {Quiltra::JPEG_FULL_PROG_NON_HIER_11_13, "1.2.840.10008.1.2.4.56"},
    {Quiltra::JPEG_LOSSLESS_NON_HIER_14, "1.2.840.10008.1.2.4.57"},
    {Quiltra::JPEG_LOSSLESS_NON_HIER_15, "1.2.840.10008.1.2.4.58"},
    {Quiltra::JPEG_EXTENDED_HIER_16_18, "1.2.840.10008.1.2.4.59"},
    {Quiltra::JPEG_EXTENDED_HIER_17_19, "1.2.840.10008.1.2.4.60"},
    {Quiltra::JPEG_SPEC_HIER_20_22, "1.2.840.10008.1.2.4.61"},
    {Quiltra::JPEG_SPEC_HIER_21_23, "1.2.840.10008.1.2.4.62"},
    {Quiltra::JPEG_FULL_PROG_HIER_24_26, "1.2.840.10008.1.2.4.63"},
    {Quiltra::JPEG_FULL_PROG_HIER_25_27, "1.2.840.10008.1.2.4.64"},
    {Quiltra::JPEG_LOSSLESS_HIER_28, "1.2.840.10008.1.2.4.65"},
    {Quiltra::JPEG_LOSSLESS_HIER_29, "1.2.840.10008.1.2.4.66"},
    // Process 14, selection value 1: the lossless JPEG most files carry.
    {Quiltra::JPEG_LOSSLESS_HIER_14, "1.2.840.10008.1.2.4.70"},
    {Quiltra::JPEG_2000_LOSSLESS_ONLY, "1.2.840.10008.1.2.4.90"},
    {Quiltra::JPEG_2000, "1.2.840.10008.1.2.4.91"},
    {Quiltra::JPEG_LS_LOSSLESS, "1.2.840.10008.1.2.4.80"},
    {Quiltra::JPEG_LS_LOSSY, "1.2.840.10008.1.2.4.81"},
    {Quiltra::MPEG2_MPML, "1.2.840.10008.1.2.4.100"},
    {Quiltra::JPEG_2000_MC_LOSSLESS_ONLY, "1.2.840.10008.1.2.4.92"},
    {Quiltra::JPEG_2000_MC, "1.2.840.10008.1.2.4.93"},
};

}  // namespace

SyntaxLayout layoutOf(Quiltra::TransferSyntax syntax) {
  SyntaxLayout layout;
  switch (syntax) {
    case Quiltra::IMPLICIT_LITTLE_ENDIAN:
      layout.explicitVr = false;
      break;
    case Quiltra::IMPLICIT_BIG_ENDIAN:
      layout.explicitVr = false;
      layout.bigEndian = true;
      break;
    case Quiltra::EXPLICIT_LITTLE_ENDIAN:
      break;
    case Quiltra::EXPLICIT_BIG_ENDIAN:
      layout.bigEndian = true;
      break;
    case Quiltra::DEFLATED_EXPLICIT_LITTLE_ENDIAN:
      layout.deflated = true;
      break;
    default:
      layout.encapsulated = true;
      break;
  }
  return layout;
}

std::optional<Quiltra::TransferSyntax> syntaxOfUid(std::string_view uid) {
  while (!uid.empty() && (uid.back() == ' ' || uid.back() == '\0')) uid.remove_suffix(1);
  for (const SyntaxEntry& entry : kSyntaxes) {
    if (uid == entry.uid) return entry.syntax;
  }
  return std::nullopt;
}

std::string uidOfSyntax(Quiltra::TransferSyntax syntax) {
  for (const SyntaxEntry& entry : kSyntaxes) {
    if (entry.syntax == syntax) return entry.uid;
  }
  return {};
}

}  // namespace Quiltra_DicomFile
