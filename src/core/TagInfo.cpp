#include "quiltra/core/TagInfo.h"

#include "NamePool.h"

#include <string_view>

#include <quiltra/dataset/Dict.h>

namespace Quiltra {

TagInfo::TagInfo(const TagId& id, const std::string& name, const Vr& vr,
                 const std::pair<unsigned int, unsigned int>& multiplicity)
    : _id(id), _name(sharedName(name)), _vr(vr), _multiplicity(multiplicity) {}

TagInfo::TagInfo(const TagId& id, const char* name, const Vr& vr,
                 const std::pair<unsigned int, unsigned int>& multiplicity)
    : _id(id),
      _name(sharedName(name != nullptr ? std::string_view(name) : std::string_view())),
      _vr(vr),
      _multiplicity(multiplicity) {}

// The three questions are asked in this order on purpose: a dictionary that fails on an
// unknown id fails on the name first, and no half-filled description escapes.
TagInfo::TagInfo(const TagId& id, const Dict& dict) : _id(id) {
  _name = sharedName(dict.name(id));
  _vr = dict.vr(id);
  _multiplicity = dict.multiplicity(id);
}

TagInfo::~TagInfo() = default;

void TagInfo::setName(const std::string& name) {
  _name = sharedName(name);
}

bool TagInfo::isCodedString() const noexcept {
  switch (_vr) {
    case LO:
    case LT:
    case PN:
    case SH:
    case ST:
    case UT:
      return true;
    default:
      return false;
  }
}

}  // namespace Quiltra
