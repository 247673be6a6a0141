#include "quiltra/io/Reader.h"

#include "Prototype.h"

#include <utility>

namespace Quiltra {

std::shared_ptr<const Reader> Reader::_prototype;

Reader::Reader(std::shared_ptr<const Dict> dict) : _dict(std::move(dict)) {}

Reader::~Reader() = default;

std::shared_ptr<Reader> Reader::create(const std::shared_ptr<const Dict>& dict) {
  return create(loadedPrototype(_prototype, "Reader::create"), dict);
}

std::shared_ptr<Reader> Reader::create(const std::shared_ptr<const Reader>& prototype,
                                       const std::shared_ptr<const Dict>& dict) {
  if (!prototype) throw Exception("Reader::create", "no prototype registered");
  return prototype->createInstance(dict);
}

std::shared_ptr<const Reader> Reader::prototype() {
  return _prototype;
}

void Reader::setPrototype(std::shared_ptr<const Reader> prototype) {
  _prototype = std::move(prototype);
}

}  // namespace Quiltra
