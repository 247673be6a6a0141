#ifndef QUILTRA_SERVICES_UIDGENERATOR_H_
#define QUILTRA_SERVICES_UIDGENERATOR_H_

#include <string>

#include <quiltra/core/Export.h>
#include <quiltra/services/Thread.h>

namespace Quiltra_Utils {

class UIDPlatform;

/// Makes unique identifiers in the dotted-decimal form of DICOM UIDs:
/// first.second.H.L.third.P.TTTTTTTTTTTTTTTTTCC, where H.L is the hardware address of the
/// machine's first Ethernet interface (in interface index order) read as two 32-bit
/// numbers, P the process id, T the UTC time to the millisecond and CC a counter that tells
/// apart identifiers made within one millisecond.
/// All state is class-wide; there is no instance data.
/// Threads: initialize must finish before other threads call uid; uid may then run on many
/// threads at once. The time state is guarded by one lock: at most 100 identifiers per
/// millisecond, later callers sleep 1 ms at a time until the clock's millisecond changes.
/// Failures throw Exception: ("Quiltra_UIDGenerator::getMac", "CANNOT GET MAC") when no
/// Ethernet interface can be found, ("UIDGenerator::initialize", "INITIALIZED TWICE") and
/// ("UIDGenerator::uid", "NOT INITIALIZED").
class QUILTRA_EXPORT UIDGenerator {
 public:
  UIDGenerator() = default;
  UIDGenerator(const UIDGenerator&) = default;
  /// Does nothing: there is no instance data.
  UIDGenerator& operator=(const UIDGenerator&) { return *this; }

  /// Builds the prefix first.second.H.L.third.P. from the three texts, the hardware address
  /// and the process id. Once per process; a failure leaves the generator uninitialised.
  static void initialize(const std::string& first, const std::string& second,
                         const std::string& third);
  static bool isInitialized();
  /// The prefix followed by the 19-digit time and counter. Takes the lock once.
  static std::string uid();

 private:
  friend class UIDPlatform;  // returns the class-wide state to its load-time values

  /// H and L in decimal, joined by ".".
  static std::string getMac();
  static unsigned long getProcID();
  /// Year (4 digits), month, day, hour, minute, second (2 each), millisecond (3) and the
  /// counter (2), read and advanced under _lock.
  static std::string getTimeStr();

  static bool _initialized;
  static std::string _prefix;
  static CriticalSection _lock;
};

}  // namespace Quiltra_Utils

#endif  // QUILTRA_SERVICES_UIDGENERATOR_H_
