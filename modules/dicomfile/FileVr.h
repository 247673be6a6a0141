#ifndef QUILTRA_MODULES_DICOMFILE_FILEVR_H_
#define QUILTRA_MODULES_DICOMFILE_FILEVR_H_

// The value representations as files spell them, and how each maps onto the library's 28.
// This is the one place that mapping lives: the file codec, and anything else that meets
// the standard's newer representations, use it so that all of them map alike.
//
// Mapping of the six representations the library does not have, each to the nearest one
// that keeps the bytes and behaves the same way as text:
//   OD, OV, SV, UV -> OB   (binary; the bytes are kept in little-endian order)
//   UC             -> LO   (text of any length, split at backslashes like LO)
//   UR             -> UT   (one text value, never split, like UT)
// The file writer spells an element under its standard representation again when the tag is
// one the standard gives such a representation (standardFileVr below); other elements are
// written under their library representation.

#include <cstdint>

#include <quiltra/core/TagId.h>
#include <quiltra/core/Vr.h>

namespace Quiltra_DicomFile {

/// The 34 representations of the standard, as stored in the two bytes of an explicit header.
enum class FileVr : std::uint8_t {
  AE,
  AS,
  AT,
  CS,
  DA,
  DS,
  DT,
  FD,
  FL,
  IS,
  LO,
  LT,
  OB,
  OD,
  OF,
  OL,
  OV,
  OW,
  PN,
  SH,
  SL,
  SQ,
  SS,
  ST,
  SV,
  TM,
  UC,
  UI,
  UL,
  UN,
  UR,
  US,
  UT,
  UV
};

struct FileVrInfo {
  char spelling[3];
  FileVr fileVr;
  Quiltra::Vr vr;
  /// An explicit header of 12 bytes (2 reserved bytes and a 32-bit length), else 8.
  bool longLength;
  /// Bytes swapped as a unit between little and big endian (1: none).
  std::uint8_t swapWidth;
  /// Bytes of one number, held one value each (AT, FD, FL, SL, SS, UL, US); 0 for text and
  /// for the binary representations held as one value of all their bytes.
  std::uint8_t valueWidth;
  /// Text held one value per backslash-separated piece (false for LT, ST, UT, UR).
  bool splitText;
  /// Held as text (the 17 character representations).
  bool isText;
  /// Padding byte for an odd length.
  char padding;
};

// clang-format off
inline constexpr FileVrInfo kFileVrTable[] = {
    {"AE", FileVr::AE, Quiltra::AE, false, 1, 0, true, true, ' '},
    {"AS", FileVr::AS, Quiltra::AS, false, 1, 0, true, true, ' '},
    {"AT", FileVr::AT, Quiltra::AT, false, 2, 4, false, false, '\0'},
    {"CS", FileVr::CS, Quiltra::CS, false, 1, 0, true, true, ' '},
    {"DA", FileVr::DA, Quiltra::DA, false, 1, 0, true, true, ' '},
    {"DS", FileVr::DS, Quiltra::DS, false, 1, 0, true, true, ' '},
    {"DT", FileVr::DT, Quiltra::DT, false, 1, 0, true, true, ' '},
    {"FD", FileVr::FD, Quiltra::FD, false, 8, 8, false, false, '\0'},
    {"FL", FileVr::FL, Quiltra::FL, false, 4, 4, false, false, '\0'},
    {"IS", FileVr::IS, Quiltra::IS, false, 1, 0, true, true, ' '},
    {"LO", FileVr::LO, Quiltra::LO, false, 1, 0, true, true, ' '},
    {"LT", FileVr::LT, Quiltra::LT, false, 1, 0, false, true, ' '},
    {"OB", FileVr::OB, Quiltra::OB, true, 1, 0, false, false, '\0'},
    {"OD", FileVr::OD, Quiltra::OB, true, 8, 0, false, false, '\0'},
    {"OF", FileVr::OF, Quiltra::OF, true, 4, 0, false, false, '\0'},
    {"OL", FileVr::OL, Quiltra::OL, true, 4, 0, false, false, '\0'},
    {"OV", FileVr::OV, Quiltra::OB, true, 8, 0, false, false, '\0'},
    {"OW", FileVr::OW, Quiltra::OW, true, 2, 0, false, false, '\0'},
    {"PN", FileVr::PN, Quiltra::PN, false, 1, 0, true, true, ' '},
    {"SH", FileVr::SH, Quiltra::SH, false, 1, 0, true, true, ' '},
    {"SL", FileVr::SL, Quiltra::SL, false, 4, 4, false, false, '\0'},
    {"SQ", FileVr::SQ, Quiltra::SQ, true, 1, 0, false, false, '\0'},
    {"SS", FileVr::SS, Quiltra::SS, false, 2, 2, false, false, '\0'},
    {"ST", FileVr::ST, Quiltra::ST, false, 1, 0, false, true, ' '},
    {"SV", FileVr::SV, Quiltra::OB, true, 8, 0, false, false, '\0'},
    {"TM", FileVr::TM, Quiltra::TM, false, 1, 0, true, true, ' '},
    {"UC", FileVr::UC, Quiltra::LO, true, 1, 0, true, true, ' '},
    {"UI", FileVr::UI, Quiltra::UI, false, 1, 0, true, true, '\0'},
    {"UL", FileVr::UL, Quiltra::UL, false, 4, 4, false, false, '\0'},
    {"UN", FileVr::UN, Quiltra::UN, true, 1, 0, false, false, '\0'},
    {"UR", FileVr::UR, Quiltra::UT, true, 1, 0, false, true, ' '},
    {"US", FileVr::US, Quiltra::US, false, 2, 2, false, false, '\0'},
    {"UT", FileVr::UT, Quiltra::UT, true, 1, 0, false, true, ' '},
    {"UV", FileVr::UV, Quiltra::OB, true, 8, 0, false, false, '\0'},
};
// clang-format on

inline constexpr const FileVrInfo& fileVrInfo(FileVr vr) {
  return kFileVrTable[static_cast<int>(vr)];
}

/// The representation spelt by two header bytes; false for a spelling the standard lacks.
inline bool parseFileVr(unsigned char first, unsigned char second, FileVr& vr) {
  for (const FileVrInfo& info : kFileVrTable) {
    if (static_cast<unsigned char>(info.spelling[0]) == first &&
        static_cast<unsigned char>(info.spelling[1]) == second) {
      vr = info.fileVr;
      return true;
    }
  }
  return false;
}

/// The file spelling of a library representation (out-of-range codes spell UN).
inline FileVr toFileVr(Quiltra::Vr vr) {
  constexpr FileVr kByVr[] = {
      FileVr::AE, FileVr::AS, FileVr::CS, FileVr::DA, FileVr::DS, FileVr::DT, FileVr::IS,
      FileVr::LO, FileVr::LT, FileVr::PN, FileVr::SH, FileVr::ST, FileVr::TM, FileVr::UT,
      FileVr::UI, FileVr::SS, FileVr::US, FileVr::AT, FileVr::SL, FileVr::UL, FileVr::FL,
      FileVr::FD, FileVr::OB, FileVr::OW, FileVr::OL, FileVr::OF, FileVr::SQ, FileVr::UN};
  return (vr >= 0 && vr <= Quiltra::UN) ? kByVr[vr] : FileVr::UN;
}

/// Standard attributes whose representation is one the library maps (the ones it is most
/// often met on); the writer spells these under their own representation again.
struct StandardFileVr {
  std::uint32_t tag;
  FileVr fileVr;
};
inline constexpr StandardFileVr kStandardFileVrs[] = {
    {0x00080119u, FileVr::UC},  // Long Code Value
    {0x00080120u, FileVr::UR},  // URN Code Value
    {0x00081190u, FileVr::UR},  // Retrieve URL
    {0x00287FE0u, FileVr::UR},  // Pixel Data Provider URL
    {0x0040E010u, FileVr::UR},  // Retrieve URI
    {0x7FE00009u, FileVr::OD},  // Double Float Pixel Data
};

/// How an element of representation vr is spelt in a file: its standard representation when
/// the library representation is the mapping of it, else the plain spelling of vr.
inline FileVr writtenFileVr(const Quiltra::TagId& id, Quiltra::Vr vr) {
  for (const StandardFileVr& entry : kStandardFileVrs) {
    if (entry.tag == id.rawId() && fileVrInfo(entry.fileVr).vr == vr) return entry.fileVr;
  }
  return toFileVr(vr);
}

}  // namespace Quiltra_DicomFile

#endif  // QUILTRA_MODULES_DICOMFILE_FILEVR_H_
