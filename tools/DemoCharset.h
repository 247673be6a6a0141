#ifndef QUILTRA_TOOLS_DEMOCHARSET_H_
#define QUILTRA_TOOLS_DEMOCHARSET_H_

#include <ostream>

namespace QuiltraTools {

/// Wraps a Latin-1 data set in a message, converts its texts to UTF-8 and prints the
/// elements before and after, bytes from 0x80 up in hexadecimal.
void showCharacterSets(std::ostream& out);

}  // namespace QuiltraTools

#endif  // QUILTRA_TOOLS_DEMOCHARSET_H_
