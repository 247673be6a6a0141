#include "quiltra/core/Logging.h"

#include <quiltra/services/Thread.h>

namespace Quiltra_Utils {

namespace {

// Allocated on first use and never deleted, so that logging from other static objects'
// constructors or destructors never meets a lock that is not yet built or already gone.
CriticalSection& loggingLock() {
  static CriticalSection* const lock = new CriticalSection();
  return *lock;
}

// Constant-initialised, so it is empty before any code runs; read and written only while
// the logging lock is held.
LoggingHandler _handler = nullptr;

}  // namespace

void setLoggingHandler(LoggingHandler handler) {
  thread_scoped_criticalsection lock(loggingLock());
  _handler = handler;
}

void logMessage(std::string message, int level) {
  // The handler runs under the lock, so calls from different threads never overlap; the
  // lock is recursive, so a handler that logs re-enters here on its own thread.
  thread_scoped_criticalsection lock(loggingLock());
  if (_handler == nullptr) {
    return;
  }
  _handler(message, level);
}

}  // namespace Quiltra_Utils
