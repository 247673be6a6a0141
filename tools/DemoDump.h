#ifndef QUILTRA_TOOLS_DEMODUMP_H_
#define QUILTRA_TOOLS_DEMODUMP_H_

#include <memory>
#include <ostream>

#include <quiltra/quiltra.h>

namespace QuiltraTools {

/// Prints the demo data set, and a change layered over it with a sequence, through
/// TextDump, then a few generated UIDs. The data set is left as it was.
void showDumpAndUids(const std::shared_ptr<Quiltra::Tree>& study, std::ostream& out);

}  // namespace QuiltraTools

#endif  // QUILTRA_TOOLS_DEMODUMP_H_
