// A module for the loader tests that lacks the entry function.
#include <quiltra/io/Module.h>

QUILTRA_MODULE_EXPORT int quiltra_module_entry_misspelt() {
  return 0;
}
