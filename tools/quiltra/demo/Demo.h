#ifndef QUILTRA_TOOLS_QUILTRA_DEMO_DEMO_H_
#define QUILTRA_TOOLS_QUILTRA_DEMO_DEMO_H_

#include <string>

namespace QuiltraTools {

/// The guided tour of `quiltra demo`: prints each step to standard output and leaves the
/// files it stores (study.bin, study.qtx, study.dcm) in folder, which it creates. Throws
/// Exception when a step fails.
void runDemo(const std::string& folder);

}  // namespace QuiltraTools

#endif  // QUILTRA_TOOLS_QUILTRA_DEMO_DEMO_H_
