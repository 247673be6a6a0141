#ifndef QUILTRA_CORE_TAGINFO_H_
#define QUILTRA_CORE_TAGINFO_H_

#include <istream>
#include <memory>
#include <ostream>
#include <string>
#include <utility>

#include <quiltra/core/Export.h>
#include <quiltra/core/TagId.h>
#include <quiltra/core/Vr.h>
#include <quiltra/io/Serializable.h>

namespace Quiltra {

class Dict;

/// The description of a data element: tag, name, value representation and multiplicity.
/// A plain value; the multiplicity is stored only, never enforced. Throws nothing of its
/// own; filling from a dictionary lets the dictionary's exceptions through. The name is an
/// immutable text shared between copies, so copying a description allocates nothing.
/// Threads: const instances may be shared.
class QUILTRA_EXPORT TagInfo : public Quiltra_Serialization::Serializable,
                               public Quiltra_Serialization::Deserializable {
 public:
  /// (0000,0000), no name, UN, (0, 0).
  TagInfo() = default;
  TagInfo(const TagId& id, const std::string& name, const Vr& vr,
          const std::pair<unsigned int, unsigned int>& multiplicity);
  /// The same from a C string (a keyword literal, say), read without making a std::string
  /// of it first; a null name is the empty name.
  TagInfo(const TagId& id, const char* name, const Vr& vr,
          const std::pair<unsigned int, unsigned int>& multiplicity);
  /// Asks dict for the name, then the representation, then the multiplicity of id.
  /// Exceptions of the dictionary pass through.
  TagInfo(const TagId& id, const Dict& dict);
  TagInfo(const TagInfo& other) = default;
  TagInfo(TagInfo&& other) noexcept = default;
  TagInfo& operator=(const TagInfo& other) = default;
  TagInfo& operator=(TagInfo&& other) noexcept = default;
  ~TagInfo() override;

  const TagId& id() const noexcept { return _id; }
  std::string name() const { return _name ? *_name : std::string(); }
  const Vr& vr() const noexcept { return _vr; }
  const std::pair<unsigned int, unsigned int>& multiplicity() const noexcept {
    return _multiplicity;
  }

  void setId(const TagId& id) { _id = id; }
  void setName(const std::string& name);
  void setVr(const Vr& vr) { _vr = vr; }
  void setMultiplicity(const std::pair<unsigned int, unsigned int>& multiplicity) {
    _multiplicity = multiplicity;
  }

  /// True for LO, LT, PN, SH, ST and UT: the texts subject to a character set.
  bool isCodedString() const noexcept;

  void serializeX(Quiltra_Serialization::Sink& sink) const override;
  void deserializeX(Quiltra_Serialization::Source& source) override;
  void toStream(std::ostream& out) const;
  void fromStream(std::istream& in);

 private:
  TagId _id;
  std::shared_ptr<const std::string> _name;  // empty for the empty name
  Vr _vr = UN;
  std::pair<unsigned int, unsigned int> _multiplicity{0, 0};
};

}  // namespace Quiltra

#endif  // QUILTRA_CORE_TAGINFO_H_
