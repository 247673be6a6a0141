#ifndef QUILTRA_TOOLS_QUILTRA_DEMO_DEMOSTORAGE_H_
#define QUILTRA_TOOLS_QUILTRA_DEMO_DEMOSTORAGE_H_

#include <memory>
#include <ostream>
#include <string>

#include <quiltra/dataset/Message.h>

namespace QuiltraTools {

/// Stores message in folder as study.bin (binary form) and study.qtx (text stream), reads
/// both back, and says whether they hold what was stored. Returns the message read from
/// the binary file.
std::shared_ptr<Quiltra::Message> storeBothForms(const std::shared_ptr<Quiltra::Message>& message,
                                                 const std::string& folder, std::ostream& out);

/// Writes message as folder/study.dcm through the DICOM file module's writer, reads it back
/// through its reader, and prints the meta information the file gained and whether the
/// data set came back unchanged.
void storeDicomFile(const std::shared_ptr<Quiltra::Message>& message, const std::string& folder,
                    std::ostream& out);

}  // namespace QuiltraTools

#endif  // QUILTRA_TOOLS_QUILTRA_DEMO_DEMOSTORAGE_H_
