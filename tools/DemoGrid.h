#ifndef QUILTRA_TOOLS_DEMOGRID_H_
#define QUILTRA_TOOLS_DEMOGRID_H_

#include <ostream>

namespace QuiltraTools {

/// Builds a small structured multi-frame grid, prints it before and after normalisation,
/// and prints one extracted position. Exceptions of the library pass through.
void showGrid(std::ostream& out);

}  // namespace QuiltraTools

#endif  // QUILTRA_TOOLS_DEMOGRID_H_
