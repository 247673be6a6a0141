#ifndef QUILTRA_CORE_DLLINIT_H_
#define QUILTRA_CORE_DLLINIT_H_

#include <quiltra/core/Export.h>

namespace Quiltra {

/// The library holds one static instance; neither its construction at load nor its
/// destruction at unload does any work.
class QUILTRA_EXPORT DLLInit {
 public:
  DLLInit() = default;
  virtual ~DLLInit();
};

}  // namespace Quiltra

#endif  // QUILTRA_CORE_DLLINIT_H_
