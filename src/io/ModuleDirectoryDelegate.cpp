#include "quiltra/io/ModuleDirectoryDelegate.h"

#include <algorithm>
#include <dlfcn.h>
#include <filesystem>
#include <map>
#include <mutex>
#include <system_error>
#include <utility>
#include <vector>

#include <quiltra/core/Exception.h>
#include <quiltra/io/Module.h>

// Where the modules lie relative to the library's own folder and to the program's
// folder, as the install rules lay them out; the build tree mirrors that layout.
#ifndef QUILTRA_LIBDIR_TO_MODULES
#define QUILTRA_LIBDIR_TO_MODULES "quiltra/modules"
#endif
#ifndef QUILTRA_BINDIR_TO_MODULES
#define QUILTRA_BINDIR_TO_MODULES "../lib/quiltra/modules"
#endif

namespace Quiltra_Utils {

namespace fs = std::filesystem;

namespace {

const char kLoadModule[] = "ModuleDirectoryDelegate::loadModule";

// A static library lies inside the program, whose folder is then the one to start from.
#ifdef QUILTRA_STATIC
constexpr bool kSharedLibrary = false;
#else
constexpr bool kSharedLibrary = true;
#endif

std::string loaderMessage() {
  const char* message = dlerror();
  return message != nullptr ? message : "unknown loader error";
}

// The folder of the shared object that holds this code; empty when unknown.
fs::path libraryFolder() {
  Dl_info info{};
  if (dladdr(libraryInstance(), &info) == 0 || info.dli_fname == nullptr) return {};
  std::error_code error;
  const fs::path file = fs::canonical(info.dli_fname, error);
  return error ? fs::path() : file.parent_path();
}

fs::path programFolder() {
  std::error_code error;
  const fs::path file = fs::read_symlink("/proc/self/exe", error);
  return error ? fs::path() : file.parent_path();
}

std::vector<fs::path> candidateFolders() {
  std::vector<fs::path> candidates;
  const fs::path library = kSharedLibrary ? libraryFolder() : fs::path();
  if (!library.empty()) candidates.push_back(library / QUILTRA_LIBDIR_TO_MODULES);
  const fs::path program = programFolder();
  if (!program.empty()) candidates.push_back(program / QUILTRA_BINDIR_TO_MODULES);
  return candidates;
}

// The modules loaded so far, by the name their description gives; a module loaded again
// (or another of the same name) replaces the entry. Descriptions live as long as their
// module, which is never unloaded once registered.
struct LoadedModules {
  std::mutex lock;
  std::map<std::string, const ModuleDescription*> byName;
};

LoadedModules& loaded() {
  static LoadedModules modules;
  return modules;
}

// Refuses a module built for another version or registering into another copy of the
// library, before any of its code runs beyond its entry.
void checkDescription(const ModuleDescription* module, const std::string& path) {
  if (module == nullptr || module->registerModule == nullptr) {
    throw Quiltra::Exception(kLoadModule, path + " describes no registration");
  }
  if (module->versionMajor != QUILTRA_VERSION_MAJOR ||
      module->versionMinor != QUILTRA_VERSION_MINOR) {
    throw Quiltra::Exception(
        kLoadModule, path + " was built for Quiltra " + std::to_string(module->versionMajor) + "." +
                         std::to_string(module->versionMinor) + "." +
                         std::to_string(module->versionPatch) + ", not " + QUILTRA_VERSION_STRING);
  }
  if (module->libraryInstance != libraryInstance()) {
    throw Quiltra::Exception(kLoadModule,
                             path + " is linked against another copy of the Quiltra library");
  }
}

}  // namespace

ModuleDirectoryDelegate::ModuleDirectoryDelegate()
    : ModuleDirectoryDelegate(defaultModuleDirectory()) {}

ModuleDirectoryDelegate::ModuleDirectoryDelegate(std::string directory)
    : _directory(std::move(directory)) {}

ModuleDirectoryDelegate::~ModuleDirectoryDelegate() = default;

void ModuleDirectoryDelegate::loadLibraries() {
  std::vector<std::string> modules;
  std::error_code error;
  for (fs::directory_iterator entry(_directory, error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code ignored;
    if (entry->path().extension() == ".so" && entry->is_regular_file(ignored)) {
      modules.push_back(entry->path().string());
    }
  }
  if (error) {
    throw Quiltra::Exception("ModuleDirectoryDelegate::loadLibraries",
                             "cannot read module directory " + _directory + ": " + error.message());
  }
  std::sort(modules.begin(), modules.end());
  for (const std::string& module : modules) loadModule(module);
}

std::string ModuleDirectoryDelegate::defaultModuleDirectory() {
  const std::vector<fs::path> candidates = candidateFolders();
  for (const fs::path& candidate : candidates) {
    std::error_code error;
    if (fs::is_directory(candidate, error)) return candidate.lexically_normal().string();
  }
  return candidates.empty() ? std::string() : candidates.front().lexically_normal().string();
}

void ModuleDirectoryDelegate::loadModule(const std::string& path) {
  // RTLD_NOW: a missing symbol fails here, not at some later call into the module.
  void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    throw Quiltra::Exception(kLoadModule, "cannot load " + path + ": " + loaderMessage());
  }
  void* entry = dlsym(handle, kModuleEntryName);
  if (entry == nullptr) {
    const std::string message = loaderMessage();
    dlclose(handle);
    throw Quiltra::Exception(kLoadModule, "no module entry in " + path + ": " + message);
  }
  const ModuleDescription* module = reinterpret_cast<ModuleEntry>(entry)();
  try {
    checkDescription(module, path);
  } catch (...) {
    dlclose(handle);
    throw;
  }
  // From here on the module stays loaded: what it registers refers to its code.
  const std::string name = module->name != nullptr ? module->name : fs::path(path).stem().string();
  {
    std::lock_guard<std::mutex> guard(loaded().lock);
    loaded().byName[name] = module;
  }
  module->registerModule();
}

void ModuleDirectoryDelegate::registerModule(const std::string& name) {
  const ModuleDescription* module = nullptr;
  {
    std::lock_guard<std::mutex> guard(loaded().lock);
    const auto found = loaded().byName.find(name);
    if (found != loaded().byName.end()) module = found->second;
  }
  if (module == nullptr) {
    throw Quiltra::Exception("ModuleDirectoryDelegate::registerModule",
                             "no module named " + name + " is loaded");
  }
  module->registerModule();
}

std::vector<std::string> ModuleDirectoryDelegate::loadedModules() {
  std::lock_guard<std::mutex> guard(loaded().lock);
  std::vector<std::string> names;
  names.reserve(loaded().byName.size());
  for (const auto& entry : loaded().byName) names.push_back(entry.first);
  return names;
}

}  // namespace Quiltra_Utils
