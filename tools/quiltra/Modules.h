#ifndef QUILTRA_TOOLS_QUILTRA_MODULES_H_
#define QUILTRA_TOOLS_QUILTRA_MODULES_H_

#include <memory>

#include <quiltra/dataset/Dict.h>
#include <quiltra/io/Dump.h>
#include <quiltra/io/Reader.h>
#include <quiltra/io/Writer.h>

namespace QuiltraTools {

/// The standard dictionary. The first call loads every module of the module folder beside
/// the library (dictionary, DICOM file reader and writer, dump writer). Throws Exception
/// when a module fails to load or none installs a dictionary.
std::shared_ptr<const Quiltra::Dict> standardDictionary();

/// A new DICOM file reader from the loaded modules, with the standard dictionary.
std::shared_ptr<Quiltra::Reader> dicomReader();

/// A new DICOM file writer: makes the DICOM file module's writer the current prototype
/// (the dump writer's is current after loading) and asks Writer::create for one.
std::shared_ptr<Quiltra::Writer> dicomWriter();

/// A new text dump on standard output, made the same way from the dump-writer module.
std::shared_ptr<Quiltra::Dump> dumpWriter();

}  // namespace QuiltraTools

#endif  // QUILTRA_TOOLS_QUILTRA_MODULES_H_
