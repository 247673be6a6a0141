// A module for the loader tests that stands for one linked against another copy of the
// library (a static one, or another installation's).
#include <quiltra/io/Module.h>

namespace {

void registerNothing() {}

constexpr char kOtherCopy = 0;

}  // namespace

QUILTRA_MODULE_EXPORT const Quiltra_Utils::ModuleDescription* quiltra_module_entry() {
  static const Quiltra_Utils::ModuleDescription description = {
      QUILTRA_VERSION_MAJOR, QUILTRA_VERSION_MINOR, QUILTRA_VERSION_PATCH,
      "other copy",          &registerNothing,      &kOtherCopy};
  return &description;
}
