#ifndef QUILTRA_CORE_VR_H_
#define QUILTRA_CORE_VR_H_

#include <string>

#include <quiltra/core/Export.h>

namespace Quiltra {

/// Value representations. The codes are stored by both storage forms: never renumber.
/// Note that the order is not alphabetical (UT precedes UI).
enum Vr : int {
  AE = 0,
  AS = 1,
  CS = 2,
  DA = 3,
  DS = 4,
  DT = 5,
  IS = 6,
  LO = 7,
  LT = 8,
  PN = 9,
  SH = 10,
  ST = 11,
  TM = 12,
  UT = 13,
  UI = 14,
  SS = 15,
  US = 16,
  AT = 17,
  SL = 18,
  UL = 19,
  FL = 20,
  FD = 21,
  OB = 22,
  OW = 23,
  OL = 24,
  OF = 25,
  SQ = 26,
  UN = 27
};

/// The kinds of program value a representation can be read or written as.
enum VRCType : int {
  VRC_STRING = 0,
  VRC_DATE = 1,
  VRC_DATETIME = 2,
  VRC_TIME = 3,
  VRC_FLOAT = 4,
  VRC_DOUBLE = 5,
  VRC_SEQUENCE = 6,
  VRC_INT = 7,
  VRC_UINT = 8,
  VRC_SHORT = 9,
  VRC_USHORT = 10,
  VRC_BINARY = 11,
  VRC_TAG = 12
};

/// The two-letter text of codes 0 to 26; every other value, 27 included, gives "UN".
QUILTRA_EXPORT std::string toString(Vr vr);

/// The code of one of the 28 texts, compared whole and case-sensitively.
/// Throws Exception("toVr", "cannot convert to vr vrstr was " + text) otherwise.
QUILTRA_EXPORT Vr toVr(const std::string& text);

/// Whether toVr would accept the text.
QUILTRA_EXPORT bool isValidVrStr(const std::string& text);

/// Whether values of vr can be accessed as type; false for a type outside 0 to 12.
QUILTRA_EXPORT bool isType(Vr vr, VRCType type);

}  // namespace Quiltra

#endif  // QUILTRA_CORE_VR_H_
