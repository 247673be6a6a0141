#include "quiltra/io/Module.h"

namespace Quiltra_Utils {

namespace {

// Its address is unique to each copy of the library in a process.
constexpr char kInstanceMarker = 0;

}  // namespace

const void* libraryInstance() noexcept {
  return &kInstanceMarker;
}

}  // namespace Quiltra_Utils
