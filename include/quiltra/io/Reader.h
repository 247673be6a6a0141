#ifndef QUILTRA_IO_READER_H_
#define QUILTRA_IO_READER_H_

#include <memory>
#include <string>

#include <quiltra/core/Export.h>

namespace Quiltra {

class Dict;
class IOParameter;
class Message;

/// The shape of a file reader. The library holds none: concrete readers come from modules
/// that the host loads through its LoadLibraryDelegate, and each module registers a
/// prototype with setPrototype. create asks that prototype for a new reader.
/// A reader shares its dictionary with whoever else holds it; copies share it too.
/// Threads: the prototype is read and replaced without a lock, so finish registration
/// before several threads create readers.
/// Fails: create throws Exception("Reader::create", "no prototype registered") when
/// loading registers no prototype.
class QUILTRA_EXPORT Reader {
 public:
  Reader(const Reader& other) = default;  // shares the dictionary
  Reader& operator=(const Reader& other) = default;
  virtual ~Reader();

  /// Reads the file at path, handling the attributes that selection chooses.
  virtual std::shared_ptr<Message> readFile(const std::string& path,
                                            std::shared_ptr<IOParameter> selection) = 0;
  /// A new reader of the concrete class that uses dict.
  virtual std::shared_ptr<Reader> createInstance(const std::shared_ptr<const Dict>& dict) const = 0;

  /// The dictionary; empty when none was given.
  std::shared_ptr<const Dict> dict() const { return _dict; }

  /// A new reader from the registered prototype, loading the modules first when none is
  /// registered. Every call gives a new object; the prototype itself is never handed out.
  static std::shared_ptr<Reader> create(const std::shared_ptr<const Dict>& dict);

 protected:
  Reader() = default;
  explicit Reader(std::shared_ptr<const Dict> dict);

  /// What prototype's createInstance gives for dict. Throws "no prototype registered"
  /// for an empty prototype.
  static std::shared_ptr<Reader> create(const std::shared_ptr<const Reader>& prototype,
                                        const std::shared_ptr<const Dict>& dict);
  static std::shared_ptr<const Reader> prototype();
  /// Replaces the prototype; readers made earlier keep working.
  static void setPrototype(std::shared_ptr<const Reader> prototype);

 private:
  std::shared_ptr<const Dict> _dict;
  static std::shared_ptr<const Reader> _prototype;
};

}  // namespace Quiltra

#endif  // QUILTRA_IO_READER_H_
