#ifndef QUILTRA_IO_TEXTDUMP_H_
#define QUILTRA_IO_TEXTDUMP_H_

#include <iostream>
#include <memory>
#include <string>

#include <quiltra/core/Export.h>
#include <quiltra/io/Dump.h>

namespace Quiltra {

/// The library's concrete Dump: writeFile prints to a named file, createInstance makes a
/// TextDump on standard output (so that a module can register it as the Writer prototype).
/// Ownership, threads and failures as for Dump.
class QUILTRA_EXPORT TextDump : public Dump {
 public:
  explicit TextDump(std::shared_ptr<const Dict> dict, std::ostream& out = std::cout);
  TextDump(const TextDump& other) = default;
  TextDump& operator=(const TextDump& other) = default;
  ~TextDump() override;

  /// Prints message into the file at path, replacing its contents; the selection is not
  /// consulted. Throws Exception("TextDump::writeFile", "cannot open file for writing") or
  /// ("TextDump::writeFile", "cannot write to file").
  void writeFile(const std::string& path, std::shared_ptr<IOParameter> selection,
                 std::shared_ptr<Message> message) override;
  /// A new TextDump on standard output that uses dict.
  std::shared_ptr<Writer> createInstance(const std::shared_ptr<const Dict>& dict) const override;
};

}  // namespace Quiltra

#endif  // QUILTRA_IO_TEXTDUMP_H_
