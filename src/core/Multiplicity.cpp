#include "quiltra/core/Multiplicity.h"

namespace Quiltra {

std::string toString(const std::pair<unsigned int, unsigned int>& multiplicity) {
  return std::to_string(multiplicity.first) + "-" + std::to_string(multiplicity.second);
}

}  // namespace Quiltra
