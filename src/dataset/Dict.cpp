#include "quiltra/dataset/Dict.h"

#include <utility>

#include <quiltra/io/LoadLibraryDelegate.h>

namespace Quiltra {

std::shared_ptr<const Dict> Dict::_singleton;

Dict::~Dict() = default;

void Dict::postInitialize() const {}

// Each accessor makes one lookup and keeps one field of the temporary description.
Vr Dict::vr(const TagId& id) const {
  return tagInfo(id).vr();
}

std::pair<unsigned int, unsigned int> Dict::multiplicity(const TagId& id) const {
  return tagInfo(id).multiplicity();
}

std::string Dict::name(const TagId& id) const {
  return tagInfo(id).name();
}

TagId Dict::tagId(const std::string& name) const {
  return tagInfo(name).id();
}

std::shared_ptr<const Dict> Dict::singleton(Quiltra_Utils::LoadLibraryDelegate* delegate) {
  if (_singleton) return _singleton;
  Quiltra_Utils::configLoadLibraries(delegate);
  // Hold our own owner: postInitialize may replace the current dictionary.
  const std::shared_ptr<const Dict> installed = _singleton;
  if (installed) installed->postInitialize();
  return _singleton;
}

void Dict::setSingleton(std::shared_ptr<const Dict> dict) {
  _singleton = std::move(dict);
}

}  // namespace Quiltra
