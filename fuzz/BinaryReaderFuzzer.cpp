// Feeds arbitrary bytes to the binary readers. Every input must end in a value or a
// Quiltra::Exception; whatever reads must write and read back to an equal object.
#include "FuzzTarget.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include <quiltra/quiltra.h>

namespace {

using Quiltra_Serialization::MemorySink;
using Quiltra_Serialization::MemorySource;

template <class Object>
Object readBack(const Object& object) {
  MemorySink sink;
  object.serializeX(sink);
  MemorySource source(sink.bytes());
  Object copy;
  copy.deserializeX(source);
  return copy;
}

bool sameTrees(const Quiltra::Tree& a, const Quiltra::Tree& b) {
  if (a.tagsSize() != b.tagsSize()) return false;
  for (const auto& [id, tag] : a.constTags()) {
    auto other = b.getTag(id, Quiltra::OwnLayer);
    if (!other || !tag->isEqual(*other, 0.0)) return false;
  }
  return true;
}

template <class Object>
void readAndCheck(MemorySource& source) {
  Object object;
  try {
    object.deserializeX(source);
  } catch (const Quiltra::Exception&) {
    return;
  }
  const Object copy = readBack(object);
  bool same = false;
  if constexpr (std::is_same_v<Object, Quiltra::Tree>) {
    same = sameTrees(object, copy);
  } else if constexpr (std::is_same_v<Object, Quiltra::Tag>) {
    same = object.isEqual(copy, 0.0);
  } else if constexpr (std::is_same_v<Object, Quiltra::TagInfo>) {
    same = object.id() == copy.id() && object.name() == copy.name() && object.vr() == copy.vr() &&
           object.multiplicity() == copy.multiplicity();
  } else {
    same = object == copy;
  }
  if (!same) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  MemorySource source(std::vector<unsigned char>(data + 1, data + size));
  switch (QuiltraFuzz::pickTarget(data[0])) {
    case QuiltraFuzz::Target::TagId:
      readAndCheck<Quiltra::TagId>(source);
      break;
    case QuiltraFuzz::Target::Value:
      readAndCheck<Quiltra::Value>(source);
      break;
    case QuiltraFuzz::Target::TagInfo:
      readAndCheck<Quiltra::TagInfo>(source);
      break;
    case QuiltraFuzz::Target::Tag:
      readAndCheck<Quiltra::Tag>(source);
      break;
    default:
      readAndCheck<Quiltra::Tree>(source);
      break;
  }
  return 0;
}
