#ifndef QUILTRA_SERVICES_UIDPLATFORM_H_
#define QUILTRA_SERVICES_UIDPLATFORM_H_

#include <functional>
#include <vector>

#include <quiltra/core/Export.h>

namespace Quiltra_Utils {

/// The hardware type of an Ethernet interface in the interface list (ARPHRD_ETHER).
inline constexpr unsigned short kEthernetInterface = 1;

/// One network interface as the platform lists it.
struct NetworkInterface {
  int index = 0;                       // the interface index; the generator prefers the lowest
  unsigned short type = 0;             // the hardware type, ARPHRD_*
  std::vector<unsigned char> address;  // the hardware address, as many bytes as its length
};

/// A UTC time to the millisecond.
struct UtcTime {
  int year = 0;
  int month = 0;
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int millisecond = 0;
};

/// The platform calls behind UIDGenerator: the interface list, the UTC clock and the
/// 1-millisecond wait. Each can be replaced, so that a test can drive a machine without
/// Ethernet, a fixed hardware address and a clock that stands still.
/// Threads: the generator calls the clock and the wait under its lock; replace the calls
/// only while no identifiers are being made.
class QUILTRA_EXPORT UIDPlatform {
 public:
  using InterfaceList = std::function<std::vector<NetworkInterface>()>;
  using Clock = std::function<UtcTime()>;
  using Pause = std::function<void()>;

  /// The AF_PACKET entries of getifaddrs; empty when the list cannot be read.
  static std::vector<NetworkInterface> systemInterfaces();
  /// CLOCK_REALTIME broken down in UTC.
  static UtcTime systemClock();
  /// Sleeps 1 millisecond.
  static void systemPause();

  /// Replace one call; an empty function restores the system's.
  static void setInterfaceList(InterfaceList list);
  static void setClock(Clock clock);
  static void setPause(Pause pause);

  /// The calls as currently chosen.
  static std::vector<NetworkInterface> interfaces();
  static UtcTime now();
  static void pause();

  /// Returns the generator to its load-time state: not initialised, no prefix, previous
  /// millisecond 0 and counter 0.
  static void resetGenerator();
};

}  // namespace Quiltra_Utils

#endif  // QUILTRA_SERVICES_UIDPLATFORM_H_
