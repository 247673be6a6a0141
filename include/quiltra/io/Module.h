#ifndef QUILTRA_IO_MODULE_H_
#define QUILTRA_IO_MODULE_H_

#include <quiltra/core/Export.h>
#include <quiltra/core/Version.h>

/// Marks the one symbol a loadable module exports, whatever the build hides.
#define QUILTRA_MODULE_EXPORT extern "C" __attribute__((visibility("default")))

namespace Quiltra_Utils {

/// What a loadable module tells the host that loads it (see ModuleDirectoryDelegate).
/// A module exports one C function named by kModuleEntryName, of type ModuleEntry, that
/// returns a pointer to its description; the description lives as long as the module.
/// registerModule installs the module's classes (Dict::setSingleton, setPrototype) and
/// may throw Exception. Threads: the host calls the entry and registerModule while it
/// loads, before concurrent use.
struct ModuleDescription {
  unsigned int versionMajor;  // of the headers the module was built with
  unsigned int versionMinor;
  unsigned int versionPatch;
  const char* name;  // for messages
  void (*registerModule)();
  const void* libraryInstance;  // libraryInstance() as the module sees it
};

using ModuleEntry = const ModuleDescription* (*)();

inline constexpr char kModuleEntryName[] = "quiltra_module_entry";

/// Identifies this copy of the library. A module registers into the copy it is linked
/// against, so the host refuses a module whose copy differs from its own (a static host,
/// or a module linked against another installation).
QUILTRA_EXPORT const void* libraryInstance() noexcept;

/// The description of a module built against these headers and linked against the
/// library: version from Version.h, this copy of the library.
inline ModuleDescription describeModule(const char* name, void (*registerModule)()) {
  return {QUILTRA_VERSION_MAJOR, QUILTRA_VERSION_MINOR, QUILTRA_VERSION_PATCH, name,
          registerModule,        libraryInstance()};
}

}  // namespace Quiltra_Utils

#endif  // QUILTRA_IO_MODULE_H_
