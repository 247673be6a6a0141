#ifndef QUILTRA_DATASET_DICT_H_
#define QUILTRA_DATASET_DICT_H_

#include <memory>
#include <string>
#include <utility>

#include <quiltra/core/Export.h>
#include <quiltra/core/TagId.h>
#include <quiltra/core/TagInfo.h>
#include <quiltra/core/TransferSyntax.h>
#include <quiltra/core/Vr.h>

namespace Quiltra_Utils {
class LoadLibraryDelegate;
}

namespace Quiltra {

/// The data dictionary interface: tag to name, representation and multiplicity, and name
/// back to tag. Concrete dictionaries come from modules that install themselves with
/// setSingleton while the host's LoadLibraryDelegate runs.
/// Threads: all operations are const; the current dictionary is read and replaced
/// without a lock, so install it before concurrent use. How lookups of unknown tags or
/// names fail is the concrete dictionary's affair; singleton reports nothing of its own.
class QUILTRA_EXPORT Dict {
 public:
  Dict() = default;
  Dict(const Dict&) = default;  // copies nothing: a Dict has no data of its own
  Dict& operator=(const Dict&) = default;
  virtual ~Dict();

  /// Finishes a concrete dictionary's set-up once it is the current one. Does nothing here.
  virtual void postInitialize() const;
  /// The dictionary's name for a transfer syntax, as the text dump prints it.
  virtual std::string syntaxName(TransferSyntax syntax) const = 0;
  /// One field each of tagInfo(id), respectively tagInfo(name).
  virtual Vr vr(const TagId& id) const;
  virtual std::pair<unsigned int, unsigned int> multiplicity(const TagId& id) const;
  virtual std::string name(const TagId& id) const;
  virtual TagId tagId(const std::string& name) const;
  virtual TagInfo tagInfo(const std::string& name) const = 0;
  virtual TagInfo tagInfo(const TagId& id) const = 0;
  virtual bool knowsTagId(const TagId& id) const = 0;
  virtual bool knowsTagName(const std::string& name) const = 0;

  bool isTagIdKnown(const TagId& id) const { return knowsTagId(id); }
  bool isTagNameKnown(const std::string& name) const { return knowsTagName(name); }

  /// The current dictionary. When there is none, asks delegate to load the dictionary
  /// module (Quiltra_Utils::configLoadLibraries) and then calls postInitialize() on what
  /// it installed, once. Empty when loading installs nothing.
  static std::shared_ptr<const Dict> singleton(Quiltra_Utils::LoadLibraryDelegate* delegate);

 protected:
  /// Makes dict the current dictionary; an empty pointer returns to "none".
  static void setSingleton(std::shared_ptr<const Dict> dict);

 private:
  static std::shared_ptr<const Dict> _singleton;
};

}  // namespace Quiltra

#endif  // QUILTRA_DATASET_DICT_H_
