#ifndef QUILTRA_TOOLS_DEMO_H_
#define QUILTRA_TOOLS_DEMO_H_

#include <ostream>

namespace QuiltraTools {

/// Walks through what the library can do and prints it; returns the process exit code.
int runDemo(std::ostream& out);

}  // namespace QuiltraTools

#endif  // QUILTRA_TOOLS_DEMO_H_
