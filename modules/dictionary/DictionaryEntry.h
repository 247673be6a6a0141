#ifndef QUILTRA_MODULES_DICTIONARY_DICTIONARYENTRY_H_
#define QUILTRA_MODULES_DICTIONARY_DICTIONARYENTRY_H_

#include <cstdint>

#include <quiltra/core/Vr.h>

namespace Quiltra {

/// One row of the generated dictionary table: the attribute with tag `tag`, or, for an
/// element range, every element from tag's element to lastElement of tag's group.
struct DictionaryEntry {
  std::uint32_t tag;
  std::uint16_t lastElement;
  Vr vr;
  std::uint32_t minimum;
  std::uint32_t maximum;
  const char* name;

  constexpr std::uint16_t group() const { return static_cast<std::uint16_t>(tag >> 16); }
  constexpr std::uint16_t firstElement() const { return static_cast<std::uint16_t>(tag); }
};

/// A range of repeating groups, such as 6000-60FF: its even groups share the attributes
/// listed under its first group.
struct RepeatingGroups {
  std::uint16_t first;
  std::uint16_t last;
};

/// An unbounded multiplicity maximum ("n").
inline constexpr std::uint32_t kUnbounded = 0xFFFFFFFFu;

}  // namespace Quiltra

#endif  // QUILTRA_MODULES_DICTIONARY_DICTIONARYENTRY_H_
