// The loadable DICOM file module. When the host loads it (ModuleDirectoryDelegate, while
// the host's LoadLibraryDelegate runs), its entry describes it, and its registration makes
// a DicomFileReader the Reader prototype and a DicomFileWriter the Writer prototype.
// Nothing else.
#include "DicomFileIO.h"

#include <quiltra/io/Module.h>

namespace {

void registerReaderAndWriter() {
  Quiltra_DicomFile::DicomFileReader::registerPrototype();
  Quiltra_DicomFile::DicomFileWriter::registerPrototype();
}

}  // namespace

QUILTRA_MODULE_EXPORT const Quiltra_Utils::ModuleDescription* quiltra_module_entry() {
  static const Quiltra_Utils::ModuleDescription description =
      Quiltra_Utils::describeModule("dicomfile", &registerReaderAndWriter);
  return &description;
}
