#include "quiltra/core/Vr.h"

#include "core/VrTable.h"

#include <cstdint>

#include <quiltra/core/Exception.h>

namespace Quiltra {

namespace {

// Indexed by code. UN (27) is last, so the strict toString can stop before it.
constexpr std::string_view kVrTexts[] = {"AE", "AS", "CS", "DA", "DS", "DT", "IS", "LO", "LT", "PN",
                                         "SH", "ST", "TM", "UT", "UI", "SS", "US", "AT", "SL", "UL",
                                         "FL", "FD", "OB", "OW", "OL", "OF", "SQ", "UN"};
constexpr int kVrCount = static_cast<int>(sizeof(kVrTexts) / sizeof(kVrTexts[0]));
static_assert(kVrCount == UN + 1, "one text per representation");

constexpr const char* kToVrMethod = "toVr";
constexpr const char* kToVrDescription = "cannot convert to vr vrstr was ";

// isType's table: one bit per representation code, one mask per VRCType.
constexpr std::uint32_t bit(Vr vr) {
  return std::uint32_t{1} << vr;
}

constexpr std::uint32_t kStringMask = (std::uint32_t{1} << (UI + 1)) - 1;  // codes 0 to 14
constexpr std::uint32_t kIntMask = bit(IS) | bit(SL) | bit(SS) | bit(US);
constexpr std::uint32_t kUIntMask = bit(UL) | bit(US) | bit(AT);
constexpr std::uint32_t kFloatMask = bit(FL) | bit(OF) | bit(DS) | kIntMask | kUIntMask;

constexpr std::uint32_t kTypeMasks[] = {
    kStringMask,                  // VRC_STRING
    bit(DA) | bit(DT),            // VRC_DATE
    bit(DT),                      // VRC_DATETIME
    bit(TM) | bit(DT),            // VRC_TIME
    kFloatMask,                   // VRC_FLOAT
    bit(FD) | kFloatMask,         // VRC_DOUBLE
    bit(SQ),                      // VRC_SEQUENCE
    kIntMask,                     // VRC_INT
    kUIntMask,                    // VRC_UINT
    bit(SS),                      // VRC_SHORT
    bit(US),                      // VRC_USHORT
    bit(UN) | bit(OW) | bit(OB),  // VRC_BINARY
    bit(AT),                      // VRC_TAG
};
constexpr int kTypeCount = static_cast<int>(sizeof(kTypeMasks) / sizeof(kTypeMasks[0]));
static_assert(kTypeCount == VRC_TAG + 1, "one mask per value type");

}  // namespace

std::optional<Vr> findVr(std::string_view text) noexcept {
  for (int code = 0; code < kVrCount; ++code) {
    if (kVrTexts[code] == text) return static_cast<Vr>(code);
  }
  return std::nullopt;
}

std::string toString(Vr vr) {
  if (vr < 0 || vr >= UN) return "UN";
  return std::string(kVrTexts[vr]);
}

Vr toVr(const std::string& text) {
  const std::optional<Vr> vr = findVr(text);
  if (!vr) throw Exception(kToVrMethod, kToVrDescription + text);
  return *vr;
}

// Same answer as calling toVr and catching its Exception, without the cost of a throw.
bool isValidVrStr(const std::string& text) {
  return findVr(text).has_value();
}

bool isType(Vr vr, VRCType type) {
  if (vr < 0 || vr >= kVrCount || type < 0 || type >= kTypeCount) return false;
  return (kTypeMasks[type] & bit(vr)) != 0;
}

}  // namespace Quiltra
