/*
 * Conversion of a data set's text values between character sets.
 *
 * Converted are the coded-string representations LO, LT, PN, SH, ST and UT, value by
 * value, and the items of sequences, recursively; every other representation, null values,
 * null items, the parent layers (items shared with them included) and the element
 * (0008,0005) stay as they are.
 *
 * A value is converted as its text (the bytes before its first zero byte) and stored back
 * as that text and one terminating zero, with the capacity the text store would leave it
 * (the old capacity when the new size fits it, else exactly the new size). The new bytes
 * are written straight into a new buffer, so a converted value costs one allocation, and
 * a pure-ASCII value already stored as text and zero is passed over without any. A value
 * stored otherwise (no terminator, or bytes after it) takes the plain road: read the text,
 * convert it, store it back.
 */
#include "dataset/ParentItems.h"
#include "quiltra/dataset/Tree.h"
#include "services/CharacterSetCodec.h"

#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <utility>

#include <quiltra/core/TagId.h>
#include <quiltra/core/Value.h>
#include <quiltra/core/Vr.h>
#include <quiltra/element/Tag.h>
#include <quiltra/services/Quiltra_Unicode.h>

namespace Quiltra {

namespace {

using Quiltra_Unicode::Conversion;

const TagId kSpecificCharacterSet(0x0008, 0x0005);

bool isCodedString(Vr vr) {
  return vr == LO || vr == LT || vr == PN || vr == SH || vr == ST || vr == UT;
}

// The plain road for values not stored as text and one zero: read the text, convert it,
// store it back.
void convertText(Tag& tag, unsigned int index, Conversion conversion) {
  const std::string text = tag.toString(index);
  tag.setValue(conversion == Conversion::Latin1ToUTF8 ? Quiltra_Unicode::latin1ToUTF8(text)
                                                      : Quiltra_Unicode::UTF8toLatin1(text),
               index);
}

// The number of bytes before the first zero byte.
std::size_t textLength(const Value& value) {
  const void* zero = std::memchr(value.data(), 0, value.size());
  if (zero == nullptr) return value.size();
  return static_cast<std::size_t>(static_cast<const unsigned char*>(zero) - value.data());
}

// A buffer as the text store leaves it for size bytes over old: the old capacity when the
// size fits it, else exactly the size.
Value bufferFor(const Value& old, unsigned int size) {
  Value stored(size > old.capacity() ? size : old.capacity());
  stored.setSize(size);
  return stored;
}

void convertValue(Tag& tag, unsigned int index, Conversion conversion) {
  const Value& old = tag.getValue(index);
  const unsigned char* text = old.data();
  const std::size_t length = textLength(old);
  if (length + 1 != old.size()) return convertText(tag, index, conversion);
  if (Quiltra_Unicode::firstNonAscii(text, length) == length) return;
  if (conversion == Conversion::Latin1ToUTF8) {
    const std::size_t size = Quiltra_Unicode::utf8Size(text, length);
    // Too long for a value: the text store refuses it.
    if (size >= std::numeric_limits<unsigned int>::max())
      return convertText(tag, index, conversion);
    Value converted = bufferFor(old, static_cast<unsigned int>(size + 1));
    Quiltra_Unicode::encodeUTF8(text, length, converted.data());
    return tag.setValue(std::move(converted), index);
  }
  // The Latin-1 text is never longer, so it fits the old size and keeps the old capacity.
  Value converted = bufferFor(old, old.size());
  const std::size_t written = Quiltra_Unicode::decodeUTF8(text, length, converted.data());
  converted.setSize(static_cast<unsigned int>(written + 1));
  // As in any stored text, a zero byte (decoded from C0 80) ends it: zeros follow.
  const std::size_t end = textLength(converted);
  std::memset(converted.data() + end, 0, written - end);
  tag.setValue(std::move(converted), index);
}

}  // namespace

void Tree::convertCharacterSet(const std::string& from, const std::string& to) {
  const Conversion conversion = Quiltra_Unicode::conversionBetween(from, to);
  // Without a conversion every value would be stored back unchanged.
  if (conversion == Conversion::None) return;
  for (const auto& [id, tag] : _tags) {
    if (!tag || id == kSpecificCharacterSet) continue;
    const Vr vr = tag->info().vr();
    if (isCodedString(vr)) {
      for (unsigned int index = 0; index < tag->numberOfValues(); ++index) {
        if (!tag->isNull(index)) convertValue(*tag, index, conversion);
      }
    } else if (vr == SQ) {
      const Tag::Items& items = tag->sequenceItems();
      const ParentItems inherited(*this, id);
      for (unsigned int index = 0; index < items.size(); ++index) {
        if (items[index] && !inherited.has(index, items[index].get())) {
          items[index]->convertCharacterSet(from, to);
        }
      }
    }
  }
}

}  // namespace Quiltra
