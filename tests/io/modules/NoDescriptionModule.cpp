// A module for the loader tests whose entry describes nothing.
#include <quiltra/io/Module.h>

QUILTRA_MODULE_EXPORT const Quiltra_Utils::ModuleDescription* quiltra_module_entry() {
  return nullptr;
}
