#include "quiltra/io/Writer.h"

#include "Prototype.h"

#include <utility>

namespace Quiltra {

std::shared_ptr<const Writer> Writer::_prototype;

Writer::Writer(std::shared_ptr<const Dict> dict) : _dict(std::move(dict)) {}

Writer::~Writer() = default;

std::shared_ptr<Writer> Writer::create(const std::shared_ptr<const Dict>& dict) {
  return loadedPrototype(_prototype, "Writer::create")->createInstance(dict);
}

std::shared_ptr<const Writer> Writer::prototype() {
  return _prototype;
}

void Writer::setPrototype(std::shared_ptr<const Writer> prototype) {
  _prototype = std::move(prototype);
}

}  // namespace Quiltra
