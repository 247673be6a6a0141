#ifndef QUILTRA_TOOLS_QUILTRA_STOREDFILE_H_
#define QUILTRA_TOOLS_QUILTRA_STOREDFILE_H_

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include <quiltra/core/TransferSyntax.h>
#include <quiltra/dataset/Message.h>

namespace QuiltraTools {

/// How a message is stored: the library's typed binary fields or its text stream, or a
/// DICOM file (through the DICOM file module).
enum class StorageForm { Binary, Text, Dicom };

/// "binary", "text" or "dicom", as the --form options spell them.
StorageForm toStorageForm(const std::string& name);

/// "implicit-le", "explicit-le", "explicit-be" or "deflated", as --syntax spells them.
Quiltra::TransferSyntax toSyntax(const std::string& name);

/// The form of a stored file, told from its first bytes: "DICM" after a 128-byte preamble
/// is a DICOM file; the code of a text field (09 00 00 00) starts the binary form; only the
/// characters 0x28 to 0x3F make the text stream; anything else is taken for a DICOM file
/// without meta information. Throws Exception for a missing or empty file.
StorageForm detectForm(const std::string& path);

struct StoredMessage {
  std::shared_ptr<Quiltra::Message> message;
  StorageForm form;
};

/// Reads a stored message in any form. Throws Exception for files that are missing, empty
/// or damaged, and for a file without meta information in which no element can be read.
StoredMessage readStored(const std::string& path);

/// Writes message in form (a DICOM file in the message's transfer syntax) to a temporary
/// file beside path and renames it over path once written and closed, so a failure never
/// leaves a half-written file or touches an existing one. Throws Exception when writing
/// fails.
void writeStored(const std::string& path, const std::shared_ptr<Quiltra::Message>& message,
                 StorageForm form);

/// The output options that convert, modify and charset share: --form and --syntax.
struct OutputChoice {
  std::string form;
  std::string syntax;
};

/// Adds --form binary|text|dicom and --syntax implicit-le|explicit-le|explicit-be|deflated
/// (a DICOM file in that syntax; not with --form binary or text) to parser.
void addOutputOptions(CLI::App& parser, OutputChoice& choice);

/// Writes what was read as choice says; what choice leaves open stays as read.
void writeChosen(const std::string& path, const StoredMessage& read, const OutputChoice& choice);

}  // namespace QuiltraTools

#endif  // QUILTRA_TOOLS_QUILTRA_STOREDFILE_H_
