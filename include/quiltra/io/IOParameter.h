#ifndef QUILTRA_IO_IOPARAMETER_H_
#define QUILTRA_IO_IOPARAMETER_H_

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <quiltra/core/Export.h>
#include <quiltra/core/TagId.h>
#include <quiltra/core/TagInfo.h>
#include <quiltra/core/Vr.h>

namespace Quiltra {

/// Which attributes a reader or writer handles: tags and value representations to process
/// or to ignore, and a half-open tag range [lower, upper). A new selection selects
/// everything. The class is abstract; concrete selections come from modules that the host
/// loads, which register a prototype with setPrototype, and create asks that prototype.
/// Owns its lists and its bounds; copies get bounds of their own.
/// Threads: the decisions only read and may run concurrently while nobody changes the
/// lists; the prototype is read and replaced without a lock.
/// Fails: create throws Exception("IOParameter::create", "no prototype registered") when
/// loading registers no prototype; the decisions never fail.
class QUILTRA_EXPORT IOParameter {
 public:
  /// Lower and upper bound; an empty pointer leaves that side open.
  using TagIdInterval = std::pair<std::shared_ptr<TagId>, std::shared_ptr<TagId>>;

  /// The text the selection was made from; its meaning belongs to the concrete class.
  virtual std::string text() const = 0;
  /// The three flags the selection was made with, in the order createInstance takes them.
  virtual bool firstFlag() const = 0;
  virtual bool secondFlag() const = 0;
  virtual bool thirdFlag() const = 0;

  virtual ~IOParameter();

  /// A new selection of the concrete class, configured from text and the three flags.
  virtual std::shared_ptr<IOParameter> createInstance(const std::string& text, bool first,
                                                      bool second, bool third) const = 0;

  /// Everything empty: every tag and representation is processed.
  IOParameter() = default;
  /// Copies the lists; each set bound is copied into a TagId of the copy's own.
  IOParameter(const IOParameter& other);
  IOParameter& operator=(const IOParameter& other);

  TagIdInterval& tagId_Interval() noexcept { return _tagId_Interval; }
  const TagIdInterval& tagId_Interval() const noexcept { return _tagId_Interval; }
  std::vector<TagId>& tag_Ids_ToIgnore() noexcept { return _tag_Ids_ToIgnore; }
  const std::vector<TagId>& tag_Ids_ToIgnore() const noexcept { return _tag_Ids_ToIgnore; }
  /// When not empty, only these tags are processed and the ignore list has no effect.
  std::vector<TagId>& tag_Ids_ToProcess() noexcept { return _tag_Ids_ToProcess; }
  const std::vector<TagId>& tag_Ids_ToProcess() const noexcept { return _tag_Ids_ToProcess; }
  std::vector<Vr>& vrs_ToIgnore() noexcept { return _vrs_ToIgnore; }
  const std::vector<Vr>& vrs_ToIgnore() const noexcept { return _vrs_ToIgnore; }
  /// When not empty, only these representations are processed.
  std::vector<Vr>& vrs_ToProcess() noexcept { return _vrs_ToProcess; }
  const std::vector<Vr>& vrs_ToProcess() const noexcept { return _vrs_ToProcess; }

  /// Whether to process id: a non-empty process list decides alone, else a non-empty
  /// ignore list, else yes; then id must lie in [lower, upper). Linear in the lists.
  static bool processTagId(const std::vector<TagId>& ignore, const std::vector<TagId>& process,
                           const TagIdInterval& interval, const TagId& id);
  bool processTagId(const TagId& id) const;
  /// The same list rule for value representations; there is no range.
  static bool processVR(const std::vector<Vr>& ignore, const std::vector<Vr>& process,
                        const Vr& vr);
  bool processVR(const Vr& vr) const;
  /// processVR of the description's representation, then, only when that holds,
  /// processTagId of its tag.
  bool process(const TagInfo& info) const;

  /// A new selection from the registered prototype, loading the modules first when none
  /// is registered.
  static std::shared_ptr<IOParameter> create(const std::string& text, bool first, bool second,
                                             bool third);

 protected:
  static std::shared_ptr<const IOParameter> prototype();
  /// Replaces the prototype; selections made earlier keep working.
  static void setPrototype(std::shared_ptr<const IOParameter> prototype);

 private:
  TagIdInterval _tagId_Interval;
  std::vector<TagId> _tag_Ids_ToIgnore;
  std::vector<TagId> _tag_Ids_ToProcess;
  std::vector<Vr> _vrs_ToIgnore;
  std::vector<Vr> _vrs_ToProcess;

  static std::shared_ptr<const IOParameter> _prototype;
};

}  // namespace Quiltra

#endif  // QUILTRA_IO_IOPARAMETER_H_
