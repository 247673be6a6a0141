#include "UIDPlatform.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <ifaddrs.h>
#include <netpacket/packet.h>
#include <sys/socket.h>
#include <utility>

namespace Quiltra_Utils {

namespace {

// The calls in use; empty means the system's. Replaced only while no identifiers are made.
UIDPlatform::InterfaceList& interfaceList() {
  static UIDPlatform::InterfaceList list;
  return list;
}

UIDPlatform::Clock& clock() {
  static UIDPlatform::Clock current;
  return current;
}

UIDPlatform::Pause& pauseCall() {
  static UIDPlatform::Pause current;
  return current;
}

// Frees the list of getifaddrs however the walk ends.
struct InterfaceAddresses {
  ifaddrs* first = nullptr;
  ~InterfaceAddresses() {
    if (first != nullptr) freeifaddrs(first);
  }
};

}  // namespace

// Only AF_PACKET entries carry the interface index, the hardware type and the hardware
// address; each interface has exactly one.
std::vector<NetworkInterface> UIDPlatform::systemInterfaces() {
  InterfaceAddresses addresses;
  if (getifaddrs(&addresses.first) != 0) return {};
  std::vector<NetworkInterface> list;
  for (const ifaddrs* entry = addresses.first; entry != nullptr; entry = entry->ifa_next) {
    if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_PACKET) continue;
    const auto* link = reinterpret_cast<const sockaddr_ll*>(entry->ifa_addr);
    const std::size_t length = std::min<std::size_t>(link->sll_halen, sizeof link->sll_addr);
    list.push_back({link->sll_ifindex, link->sll_hatype,
                    std::vector<unsigned char>(link->sll_addr, link->sll_addr + length)});
  }
  return list;
}

UtcTime UIDPlatform::systemClock() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  tm broken{};
  gmtime_r(&now.tv_sec, &broken);
  return {broken.tm_year + 1900,
          broken.tm_mon + 1,
          broken.tm_mday,
          broken.tm_hour,
          broken.tm_min,
          broken.tm_sec,
          static_cast<int>(now.tv_nsec / 1000000)};
}

// Sleeps at most 1 ms: up to the start of the clock's next millisecond, so that the
// generator loses no part of that millisecond to a sleep that runs past it.
void UIDPlatform::systemPause() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  constexpr long kNanosecondsPerMillisecond = 1000000;
  timespec wake = now;
  wake.tv_nsec = (now.tv_nsec / kNanosecondsPerMillisecond + 1) * kNanosecondsPerMillisecond;
  if (wake.tv_nsec >= 1000 * kNanosecondsPerMillisecond) {
    wake.tv_sec += 1;
    wake.tv_nsec -= 1000 * kNanosecondsPerMillisecond;
  }
  while (clock_nanosleep(CLOCK_REALTIME, TIMER_ABSTIME, &wake, nullptr) == EINTR) {
  }
}

void UIDPlatform::setInterfaceList(InterfaceList list) {
  interfaceList() = std::move(list);
}

void UIDPlatform::setClock(Clock clock_) {
  clock() = std::move(clock_);
}

void UIDPlatform::setPause(Pause pause_) {
  pauseCall() = std::move(pause_);
}

std::vector<NetworkInterface> UIDPlatform::interfaces() {
  return interfaceList() ? interfaceList()() : systemInterfaces();
}

UtcTime UIDPlatform::now() {
  return clock() ? clock()() : systemClock();
}

void UIDPlatform::pause() {
  if (pauseCall()) return pauseCall()();
  systemPause();
}

}  // namespace Quiltra_Utils
