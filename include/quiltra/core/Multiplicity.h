#ifndef QUILTRA_CORE_MULTIPLICITY_H_
#define QUILTRA_CORE_MULTIPLICITY_H_

#include <string>
#include <utility>

#include <quiltra/core/Export.h>

namespace Quiltra {

/// A value multiplicity: (minimum, maximum) number of values.
using Multiplicity = std::pair<unsigned int, unsigned int>;

/// "min-max" in decimal, no spaces or padding: (1, 3) gives "1-3".
QUILTRA_EXPORT std::string toString(const std::pair<unsigned int, unsigned int>& multiplicity);

}  // namespace Quiltra

#endif  // QUILTRA_CORE_MULTIPLICITY_H_
