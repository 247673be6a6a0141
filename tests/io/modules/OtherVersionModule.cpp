// A module for the loader tests that claims the next major version of the library
// (the version is checked first, so it names no copy of the library).
#include <quiltra/io/Module.h>

namespace {

void registerNothing() {}

}  // namespace

QUILTRA_MODULE_EXPORT const Quiltra_Utils::ModuleDescription* quiltra_module_entry() {
  static const Quiltra_Utils::ModuleDescription description = {
      QUILTRA_VERSION_MAJOR + 1, QUILTRA_VERSION_MINOR, QUILTRA_VERSION_PATCH,
      "other version",           &registerNothing,      nullptr};
  return &description;
}
