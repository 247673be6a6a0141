#include "quiltra/core/TagId.h"

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include <quiltra/core/Exception.h>
#include <quiltra/core/Quiltra_Utils.h>

namespace Quiltra {

namespace {

// One half of a "gggg,eeee" text: the hexadecimal digits it holds, low 16 bits kept, so
// parentheses, blanks and "0x" prefixes need no special treatment.
unsigned int parseHalf(const std::string& piece) {
  return Quiltra_Utils::hexToUInt(Quiltra_Utils::digitsOnly(piece, true)) & 0xFFFFu;
}

}  // namespace

TagId::TagId(std::string text) {
  const std::vector<std::string> pieces = Quiltra_Utils::split(text, ',', false);
  if (pieces.size() != 2) {
    throw Exception("TagId::TagId", "cannot convert to tagid tidstr was " + text);
  }
  _raw = (parseHalf(pieces[0]) << 16) | parseHalf(pieces[1]);
}

TagId::~TagId() = default;

std::shared_ptr<TagId> TagId::create(unsigned int raw) {
  return std::make_shared<TagId>(raw);
}

std::shared_ptr<TagId> TagId::create(unsigned short group, unsigned short element) {
  return std::make_shared<TagId>(group, element);
}

std::shared_ptr<TagId> TagId::create(const TagId& other) {
  return std::make_shared<TagId>(other);
}

std::shared_ptr<TagId> TagId::create(std::string text) {
  return std::make_shared<TagId>(std::move(text));
}

std::string TagId::toString() const {
  char text[16];
  std::snprintf(text, sizeof text, "(%04x,%04x)", static_cast<unsigned int>(groupId()),
                static_cast<unsigned int>(elementId()));
  return text;
}

}  // namespace Quiltra
