#include "StandardDictionary.h"

#include "DictionaryTable.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <string_view>

#include <quiltra/core/Exception.h>

namespace Quiltra {

namespace {

using DictionaryTable::kByName;
using DictionaryTable::kEntries;
using DictionaryTable::kRepeatingEntries;
using DictionaryTable::kRepeatingGroups;

const char kTagInfo[] = "StandardDictionary::tagInfo";

// Rules of the standard that cover whole families of tags.
constexpr DictionaryEntry kGroupLength{0x00010000, 0x0000, UL, 1, 1, "GroupLength"};
constexpr DictionaryEntry kPrivateCreator{0x00010010, 0x00FF, LO, 1, 1, "PrivateCreator"};

// The entry whose tag range holds key: the last entry starting at or before key, if key is
// within its group and element range. One binary search.
template <std::size_t N>
const DictionaryEntry* findInTable(const DictionaryEntry (&table)[N], std::uint32_t key) {
  const auto after = std::upper_bound(
      std::begin(table), std::end(table), key,
      [](std::uint32_t wanted, const DictionaryEntry& entry) { return wanted < entry.tag; });
  if (after == std::begin(table)) return nullptr;
  const DictionaryEntry& entry = *std::prev(after);
  const bool holds = (key >> 16) == entry.group() && (key & 0xFFFFu) <= entry.lastElement;
  return holds ? &entry : nullptr;
}

// An even group of a repeating range reads as the range's first group.
std::optional<std::uint16_t> repeatingBase(std::uint16_t group) {
  if (group % 2 != 0) return std::nullopt;
  for (const RepeatingGroups& range : kRepeatingGroups) {
    if (group >= range.first && group <= range.last) return range.first;
  }
  return std::nullopt;
}

const DictionaryEntry* findById(const TagId& id) {
  if (const DictionaryEntry* entry = findInTable(kEntries, id.rawId())) return entry;
  const std::uint16_t element = id.elementId();
  const std::uint16_t group = repeatingBase(id.groupId()).value_or(id.groupId());
  const std::uint32_t key = (std::uint32_t{group} << 16) | element;
  if (const DictionaryEntry* entry = findInTable(kRepeatingEntries, key)) return entry;
  if (element == 0x0000) return &kGroupLength;
  if (id.isPrivate() && element >= 0x0010 && element <= 0x00FF) return &kPrivateCreator;
  return nullptr;
}

const DictionaryEntry* findByName(std::string_view name) {
  const auto found = std::lower_bound(
      std::begin(kByName), std::end(kByName), name,
      [](const DictionaryEntry* entry, std::string_view wanted) { return entry->name < wanted; });
  if (found != std::end(kByName) && (*found)->name == name) return *found;
  if (name == kGroupLength.name) return &kGroupLength;
  if (name == kPrivateCreator.name) return &kPrivateCreator;
  return nullptr;
}

TagInfo describe(const DictionaryEntry& entry, const TagId& id) {
  return TagInfo(id, entry.name, entry.vr, {entry.minimum, entry.maximum});
}

// The UIDs of transfer syntax codes 1 to 31; empty where the standard defines none.
constexpr std::string_view kSyntaxUids[] = {
    "",                         // 0: invalid
    "1.2.840.10008.1.2",        // IMPLICIT_LITTLE_ENDIAN
    "1.2.840.10008.1.2.1",      // EXPLICIT_LITTLE_ENDIAN
    "1.2.840.10008.1.2.2",      // EXPLICIT_BIG_ENDIAN
    "",                         // IMPLICIT_BIG_ENDIAN has no UID
    "1.2.840.10008.1.2.1.99",   // DEFLATED_EXPLICIT_LITTLE_ENDIAN
    "1.2.840.10008.1.2.5",      // RLE
    "1.2.840.10008.1.2.4.50",   // JPEG_BASELINE
    "1.2.840.10008.1.2.4.51",   // JPEG_EXTENDED_2_4
    "1.2.840.10008.1.2.4.52",   // JPEG_EXTENDED_3_5
    "1.2.840.10008.1.2.4.53",   // JPEG_SPEC_NON_HIER_6_8
    "1.2.840.10008.1.2.4.54",   // JPEG_SPEC_NON_HIER_7_9
    "1.2.840.10008.1.2.4.55",   // JPEG_FULL_PROG_NON_HIER_10_12
    "1.2.840.10008.1.2.4.56",   // JPEG_FULL_PROG_NON_HIER_11_13
    "1.2.840.10008.1.2.4.57",   // JPEG_LOSSLESS_NON_HIER_14
    "1.2.840.10008.1.2.4.58",   // JPEG_LOSSLESS_NON_HIER_15
    "1.2.840.10008.1.2.4.59",   // JPEG_EXTENDED_HIER_16_18
    "1.2.840.10008.1.2.4.60",   // JPEG_EXTENDED_HIER_17_19
    "1.2.840.10008.1.2.4.61",   // JPEG_SPEC_HIER_20_22
    "1.2.840.10008.1.2.4.62",   // JPEG_SPEC_HIER_21_23
    "1.2.840.10008.1.2.4.63",   // JPEG_FULL_PROG_HIER_24_26
    "1.2.840.10008.1.2.4.64",   // JPEG_FULL_PROG_HIER_25_27
    "1.2.840.10008.1.2.4.65",   // JPEG_LOSSLESS_HIER_28
    "1.2.840.10008.1.2.4.66",   // JPEG_LOSSLESS_HIER_29
    "1.2.840.10008.1.2.4.70",   // JPEG_LOSSLESS_HIER_14 (process 14, selection value 1)
    "1.2.840.10008.1.2.4.90",   // JPEG_2000_LOSSLESS_ONLY
    "1.2.840.10008.1.2.4.91",   // JPEG_2000
    "1.2.840.10008.1.2.4.80",   // JPEG_LS_LOSSLESS
    "1.2.840.10008.1.2.4.81",   // JPEG_LS_LOSSY
    "1.2.840.10008.1.2.4.100",  // MPEG2_MPML
    "1.2.840.10008.1.2.4.92",   // JPEG_2000_MC_LOSSLESS_ONLY
    "1.2.840.10008.1.2.4.93",   // JPEG_2000_MC
};

}  // namespace

std::string StandardDictionary::syntaxName(TransferSyntax syntax) const {
  const int code = static_cast<int>(syntax);
  const bool hasUid =
      code > 0 && code < static_cast<int>(std::size(kSyntaxUids)) && !kSyntaxUids[code].empty();
  return hasUid ? std::string(kSyntaxUids[code]) : toString(syntax);
}

TagInfo StandardDictionary::tagInfo(const std::string& name) const {
  const DictionaryEntry* entry = findByName(name);
  if (entry == nullptr) throw Exception(kTagInfo, "unknown name " + name);
  return describe(*entry, TagId(entry->tag));
}

TagInfo StandardDictionary::tagInfo(const TagId& id) const {
  const DictionaryEntry* entry = findById(id);
  if (entry == nullptr) throw Exception(kTagInfo, "unknown tag " + id.toString());
  return describe(*entry, id);
}

bool StandardDictionary::knowsTagId(const TagId& id) const {
  return findById(id) != nullptr;
}

bool StandardDictionary::knowsTagName(const std::string& name) const {
  return findByName(name) != nullptr;
}

void StandardDictionary::install() {
  setSingleton(std::make_shared<const StandardDictionary>());
}

}  // namespace Quiltra
