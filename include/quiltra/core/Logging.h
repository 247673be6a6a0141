#ifndef QUILTRA_CORE_LOGGING_H_
#define QUILTRA_CORE_LOGGING_H_

#include <string>

#include <quiltra/core/Export.h>

namespace Quiltra_Utils {

/// The host's logging function: (message, level). The library logs at level 0 only.
using LoggingHandler = void (*)(std::string message, int level);

/// Replaces the process-wide handler; nullptr removes it. Serialised with logMessage
/// by one re-entrant process-wide lock, so a replaced handler is never called after
/// this returns.
QUILTRA_EXPORT void setLoggingHandler(LoggingHandler handler);

/// Calls the handler, if one is set, under the logging lock. A handler that logs from
/// inside itself re-enters on the same thread without deadlock.
QUILTRA_EXPORT void logMessage(std::string message, int level);

}  // namespace Quiltra_Utils

#endif  // QUILTRA_CORE_LOGGING_H_
