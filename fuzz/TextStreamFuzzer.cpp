// Feeds arbitrary text to the text-stream readers. Readers never throw for damaged text;
// whatever they read must write and read back to the same object.
#include "FuzzTarget.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include <quiltra/quiltra.h>

namespace {

using QuiltraFuzz::textOf;

// Reading the written text again must reproduce that text exactly.
template <class Object>
void readAndCheck(const std::string& text) {
  std::istringstream in(text);
  Object object;
  object.fromStream(in);
  const std::string written = textOf(object);
  std::istringstream again(written);
  Object copy;
  copy.fromStream(again);
  if (textOf(copy) != written) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
  switch (QuiltraFuzz::pickTarget(data[0])) {
    case QuiltraFuzz::Target::TagId:
      readAndCheck<Quiltra::TagId>(text);
      break;
    case QuiltraFuzz::Target::Value:
      readAndCheck<Quiltra::Value>(text);
      break;
    case QuiltraFuzz::Target::TagInfo:
      readAndCheck<Quiltra::TagInfo>(text);
      break;
    case QuiltraFuzz::Target::Tag:
      readAndCheck<Quiltra::Tag>(text);
      break;
    default:
      readAndCheck<Quiltra::Tree>(text);
      break;
  }
  return 0;
}
