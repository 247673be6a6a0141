#ifndef QUILTRA_CORE_TAGID_H_
#define QUILTRA_CORE_TAGID_H_

#include <istream>
#include <memory>
#include <ostream>
#include <string>

#include <quiltra/core/Export.h>
#include <quiltra/io/Serializable.h>

namespace Quiltra {

/// An attribute tag: group in the high 16 bits, element in the low 16, ordered as an
/// unsigned 32-bit number. A plain value; threads may share const instances.
class QUILTRA_EXPORT TagId : public Quiltra_Serialization::Serializable,
                             public Quiltra_Serialization::Deserializable {
 public:
  TagId() = default;
  explicit TagId(unsigned int raw) : _raw(raw) {}
  TagId(unsigned short group, unsigned short element)
      : _raw((static_cast<unsigned int>(group) << 16) | element) {}
  /// Parses "(gggg,eeee)" leniently: exactly one comma, non-hex characters ignored,
  /// low 16 bits of each part kept. Throws Exception("TagId::TagId",
  /// "cannot convert to tagid tidstr was " + text) when there is not exactly one comma.
  explicit TagId(std::string text);
  TagId(const TagId& other) = default;
  TagId& operator=(const TagId& other) = default;
  ~TagId() override;

  static std::shared_ptr<TagId> create(unsigned int raw);
  static std::shared_ptr<TagId> create(unsigned short group, unsigned short element);
  static std::shared_ptr<TagId> create(const TagId& other);
  static std::shared_ptr<TagId> create(std::string text);

  unsigned short groupId() const noexcept { return static_cast<unsigned short>(_raw >> 16); }
  unsigned short elementId() const noexcept { return static_cast<unsigned short>(_raw); }
  unsigned int rawId() const noexcept { return _raw; }
  /// Changes the id in place.
  unsigned int& rawId() noexcept { return _raw; }
  operator unsigned int() const noexcept { return _raw; }
  operator unsigned int&() noexcept { return _raw; }

  /// True when the group is odd.
  bool isPrivate() const noexcept { return (_raw & 0x00010000u) != 0; }

  bool operator==(const TagId& other) const noexcept { return _raw == other._raw; }
  bool operator!=(const TagId& other) const noexcept { return _raw != other._raw; }
  bool operator<(const TagId& other) const noexcept { return _raw < other._raw; }
  bool operator<=(const TagId& other) const noexcept { return _raw <= other._raw; }
  bool operator>(const TagId& other) const noexcept { return _raw > other._raw; }
  bool operator>=(const TagId& other) const noexcept { return _raw >= other._raw; }

  /// "(gggg,eeee)" in lower-case hexadecimal.
  std::string toString() const;

  void serializeX(Quiltra_Serialization::Sink& sink) const override;
  void deserializeX(Quiltra_Serialization::Source& source) override;
  void toStream(std::ostream& out) const;
  void fromStream(std::istream& in);

 private:
  unsigned int _raw = 0;
};

}  // namespace Quiltra

#endif  // QUILTRA_CORE_TAGID_H_
