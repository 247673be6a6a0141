#ifndef QUILTRA_IO_PROTOTYPE_H_
#define QUILTRA_IO_PROTOTYPE_H_

#include <memory>

#include <quiltra/core/Exception.h>
#include <quiltra/io/LoadLibraryDelegate.h>

namespace Quiltra {

/// The prototype registered in registered (a class's _prototype), for the create operations
/// of classes whose implementations come from loaded modules. When none is registered,
/// asks the host's default delegate to load the modules, which register themselves, and
/// looks again. Throws Exception(method, "no prototype registered") when there is still
/// none, so nothing is ever called through an empty prototype.
template <class Base>
std::shared_ptr<const Base> loadedPrototype(const std::shared_ptr<const Base>& registered,
                                            const char* method) {
  if (!registered) Quiltra_Utils::configLoadLibraries(nullptr);
  if (!registered) throw Exception(method, "no prototype registered");
  return registered;
}

}  // namespace Quiltra

#endif  // QUILTRA_IO_PROTOTYPE_H_
