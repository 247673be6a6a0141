#ifndef QUILTRA_IO_WRITER_H_
#define QUILTRA_IO_WRITER_H_

#include <memory>
#include <string>

#include <quiltra/core/Export.h>

namespace Quiltra {

class Dict;
class IOParameter;
class Message;

/// The shape of a file writer. Concrete writers come from modules that the host loads
/// through its LoadLibraryDelegate, and each module registers a prototype with
/// setPrototype; create asks that prototype for a new writer. The library's own text dump
/// (Dump, TextDump) derives from it.
/// A writer shares its dictionary with whoever else holds it; copies share it too.
/// Threads: the prototype is read and replaced without a lock, so finish registration
/// before several threads create writers.
/// Fails: create throws Exception("Writer::create", "no prototype registered") when
/// loading registers no prototype.
class QUILTRA_EXPORT Writer {
 public:
  Writer(const Writer& other) = default;  // shares the dictionary
  Writer& operator=(const Writer& other) = default;
  virtual ~Writer();

  /// Writes message to the file at path, handling the attributes that selection chooses.
  virtual void writeFile(const std::string& path, std::shared_ptr<IOParameter> selection,
                         std::shared_ptr<Message> message) = 0;
  /// A new writer of the concrete class that uses dict.
  virtual std::shared_ptr<Writer> createInstance(const std::shared_ptr<const Dict>& dict) const = 0;

  /// A new writer from the registered prototype, loading the modules first when none is
  /// registered. Every call gives a new object; the prototype itself is never handed out.
  static std::shared_ptr<Writer> create(const std::shared_ptr<const Dict>& dict);

 protected:
  Writer() = default;
  explicit Writer(std::shared_ptr<const Dict> dict);

  /// The dictionary; empty when none was given.
  std::shared_ptr<const Dict> dict() const { return _dict; }

  static std::shared_ptr<const Writer> prototype();
  /// Replaces the prototype; writers made earlier keep working.
  static void setPrototype(std::shared_ptr<const Writer> prototype);

 private:
  std::shared_ptr<const Dict> _dict;
  static std::shared_ptr<const Writer> _prototype;
};

}  // namespace Quiltra

#endif  // QUILTRA_IO_WRITER_H_
