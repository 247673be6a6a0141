#include "Demo.h"

#include <quiltra/quiltra.h>

namespace QuiltraTools {

int runDemo(std::ostream& out) {
  out << "Quiltra demo\n";
  return 0;
}

}  // namespace QuiltraTools
