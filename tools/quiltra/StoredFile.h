#ifndef QUILTRA_TOOLS_QUILTRA_STOREDFILE_H_
#define QUILTRA_TOOLS_QUILTRA_STOREDFILE_H_

#include <memory>
#include <string>

#include <quiltra/dataset/Message.h>

namespace QuiltraTools {

/// The two storage forms of a message: typed binary fields, or the text stream.
enum class StorageForm { Binary, Text };

/// "binary" or "text", as the --form options spell them.
StorageForm toStorageForm(const std::string& name);

/// The form of a stored file, told from its first bytes: a text stream holds only the
/// characters 0x28 to 0x3F. Throws Exception for a missing or empty file.
StorageForm detectForm(const std::string& path);

/// Reads a stored message in either form. Throws Exception for files that are missing,
/// empty or damaged.
std::shared_ptr<Quiltra::Message> readStored(const std::string& path);

/// Writes message in the given form to a temporary file beside path and renames it over path
/// once written and closed, so a failure never leaves a half-written file or touches an
/// existing one. Throws Exception when writing fails.
void writeStored(const std::string& path, const Quiltra::Message& message, StorageForm form);

}  // namespace QuiltraTools

#endif  // QUILTRA_TOOLS_QUILTRA_STOREDFILE_H_
