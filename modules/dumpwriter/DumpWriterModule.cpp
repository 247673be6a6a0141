// The dump-writer module. When a host loads it (ModuleDirectoryDelegate), its entry
// describes it, and its registration makes a TextDump (without a dictionary; each writer
// that Writer::create makes gets the dictionary asked for) the Writer prototype. Nothing else.
//
// The DICOM file module registers a Writer prototype too. Modules load in name order, so
// after loading a whole module folder this one ("dumpwriter", after "dicomfile") is the
// current writer; a host makes either current again with
// ModuleDirectoryDelegate::registerModule("dumpwriter" or "dicomfile").
#include <memory>

#include <quiltra/io/Module.h>
#include <quiltra/io/TextDump.h>

namespace {

// TextDump's prototype registration is protected; the module's class reaches it.
class DumpWriterRegistration : public Quiltra::TextDump {
 public:
  static void registerPrototype() { setPrototype(std::make_shared<Quiltra::TextDump>(nullptr)); }
};

}  // namespace

QUILTRA_MODULE_EXPORT const Quiltra_Utils::ModuleDescription* quiltra_module_entry() {
  static const Quiltra_Utils::ModuleDescription description =
      Quiltra_Utils::describeModule("dumpwriter", &DumpWriterRegistration::registerPrototype);
  return &description;
}
