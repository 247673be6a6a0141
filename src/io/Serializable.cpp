#include "quiltra/io/Serializable.h"

namespace Quiltra_Serialization {

// Out of line so that the vtables live in the library, not in every user.
Serializable::~Serializable() = default;
Deserializable::~Deserializable() = default;

}  // namespace Quiltra_Serialization
