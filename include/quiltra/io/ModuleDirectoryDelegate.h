#ifndef QUILTRA_IO_MODULEDIRECTORYDELEGATE_H_
#define QUILTRA_IO_MODULEDIRECTORYDELEGATE_H_

#include <string>
#include <vector>

#include <quiltra/core/Export.h>
#include <quiltra/io/LoadLibraryDelegate.h>

namespace Quiltra_Utils {

/// A LoadLibraryDelegate that loads every module (*.so) of a module directory with dlopen
/// and lets each register its classes. By default the directory is the one installed
/// beside this library (<libdir>/quiltra/modules), found from where the library or the
/// program itself lies, so a build tree and any install prefix work without settings:
///
///   Quiltra_Utils::ModuleDirectoryDelegate modules;
///   auto dict = Quiltra::Dict::singleton(&modules);
///
/// A module stays loaded for the rest of the process (objects it registered outlive any
/// delegate); loading a module again only runs its registration again.
///
/// Modules load in name order and a later registration replaces an earlier one, so when two
/// modules register the same kind of class the last in name order wins: of the standard
/// modules, "dumpwriter" (TextDump) is the Writer prototype after loading, not "dicomfile".
/// A host picks another with registerModule, by the module's name:
///
///   Quiltra_Utils::ModuleDirectoryDelegate::registerModule("dicomfile");
///   auto writer = Quiltra::Writer::create(dict);  // now a DICOM file writer
///
/// Threads: load before the library is used concurrently (dlopen itself is thread-safe).
/// Fails with Exception naming the directory or module file and the loader's message.
class QUILTRA_EXPORT ModuleDirectoryDelegate : public LoadLibraryDelegate {
 public:
  /// Loads from defaultModuleDirectory().
  ModuleDirectoryDelegate();
  /// Loads from directory instead.
  explicit ModuleDirectoryDelegate(std::string directory);
  ModuleDirectoryDelegate(const ModuleDirectoryDelegate&) = default;
  ModuleDirectoryDelegate& operator=(const ModuleDirectoryDelegate&) = default;
  ~ModuleDirectoryDelegate() override;

  /// Loads every regular file named *.so in the directory, in name order, with loadModule.
  /// Throws Exception when the directory cannot be read or a module fails to load; the
  /// modules before it stay registered.
  void loadLibraries() override;

  const std::string& directory() const noexcept { return _directory; }

  /// The module directory of this copy of the library: <libdir>/quiltra/modules beside
  /// the shared library, else the same place relative to the running program (static
  /// builds). The first that exists; when none does, the first, so errors name it.
  static std::string defaultModuleDirectory();

  /// Loads one module file and runs its registration. Throws Exception when the file
  /// cannot be loaded, has no entry function, was built for another major or minor
  /// version, or is linked against another copy of the library.
  static void loadModule(const std::string& path);

  /// Runs the registration of the loaded module named name (the name its description
  /// gives) again, making its dictionary, reader, writer or selection the current ones.
  /// Throws Exception("ModuleDirectoryDelegate::registerModule", "no module named <name>
  /// is loaded") and changes nothing when no loaded module has that name.
  static void registerModule(const std::string& name);

  /// The names of the modules loaded so far in this process, in name order.
  static std::vector<std::string> loadedModules();

 private:
  std::string _directory;
};

}  // namespace Quiltra_Utils

#endif  // QUILTRA_IO_MODULEDIRECTORYDELEGATE_H_
