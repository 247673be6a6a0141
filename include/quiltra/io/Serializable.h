#ifndef QUILTRA_IO_SERIALIZABLE_H_
#define QUILTRA_IO_SERIALIZABLE_H_

#include <quiltra/core/Export.h>

namespace Quiltra_Serialization {

class Sink;
class Source;

/// An object that can write itself to a byte sink as typed fields.
class QUILTRA_EXPORT Serializable {
 public:
  Serializable() = default;
  Serializable(const Serializable&) = default;
  Serializable& operator=(const Serializable&) = default;
  virtual void serializeX(Sink& sink) const = 0;
  virtual ~Serializable();
};

/// An object that can replace its content by what a byte source holds.
class QUILTRA_EXPORT Deserializable {
 public:
  Deserializable() = default;
  Deserializable(const Deserializable&) = default;
  Deserializable& operator=(const Deserializable&) = default;
  virtual void deserializeX(Source& source) = 0;
  virtual ~Deserializable();
};

}  // namespace Quiltra_Serialization

#endif  // QUILTRA_IO_SERIALIZABLE_H_
