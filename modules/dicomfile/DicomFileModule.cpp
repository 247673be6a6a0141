// The loadable DICOM file module. Registers, when the host loads it (static initialisation
// of the shared object, so while the host's LoadLibraryDelegate runs), a DicomFileReader as
// the Reader prototype and a DicomFileWriter as the Writer prototype. Nothing else.
#include "DicomFileIO.h"

namespace {

struct Registration {
  Registration() {
    Quiltra_DicomFile::DicomFileReader::registerPrototype();
    Quiltra_DicomFile::DicomFileWriter::registerPrototype();
  }
};

const Registration kRegistration;

}  // namespace
