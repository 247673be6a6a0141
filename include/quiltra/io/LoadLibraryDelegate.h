#ifndef QUILTRA_IO_LOADLIBRARYDELEGATE_H_
#define QUILTRA_IO_LOADLIBRARYDELEGATE_H_

#include <quiltra/core/Export.h>

namespace Quiltra_Utils {

/// The host's callback for loading the modules that supply the dictionary, readers,
/// writers and selections. The modules register themselves while loadLibraries runs.
/// The library never owns a delegate and calls it without a lock: loading should finish
/// before several threads use the library. Exceptions of loadLibraries pass through.
class QUILTRA_EXPORT LoadLibraryDelegate {
 public:
  LoadLibraryDelegate() = default;
  LoadLibraryDelegate(const LoadLibraryDelegate&) = default;
  LoadLibraryDelegate& operator=(const LoadLibraryDelegate&) = default;
  virtual ~LoadLibraryDelegate();
  virtual void loadLibraries() = 0;
};

/// Calls loadLibraries() once on delegate. With nullptr, uses the default delegate; with
/// no default either, does nothing.
QUILTRA_EXPORT void configLoadLibraries(LoadLibraryDelegate* delegate);

/// Registers the delegate used when none is passed; nullptr removes it. Not owned.
QUILTRA_EXPORT void setDefaultLoadLibraryDelegate(LoadLibraryDelegate* delegate);

}  // namespace Quiltra_Utils

#endif  // QUILTRA_IO_LOADLIBRARYDELEGATE_H_
