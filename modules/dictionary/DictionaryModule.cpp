// The standard-dictionary module. When a host loads it (ModuleDirectoryDelegate), its
// entry describes it, and its registration makes a StandardDictionary the current
// dictionary through Dict::setSingleton. Loading runs no code of its own before that.
#include "StandardDictionary.h"

#include <quiltra/io/Module.h>

namespace {

void registerDictionary() {
  Quiltra::StandardDictionary::install();
}

}  // namespace

QUILTRA_MODULE_EXPORT const Quiltra_Utils::ModuleDescription* quiltra_module_entry() {
  static const Quiltra_Utils::ModuleDescription description =
      Quiltra_Utils::describeModule("dictionary", &registerDictionary);
  return &description;
}
