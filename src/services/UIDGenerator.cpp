#include "quiltra/services/UIDGenerator.h"

#include "UIDPlatform.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <sys/types.h>
#include <unistd.h>
#include <vector>

#include <quiltra/core/Exception.h>

namespace Quiltra_Utils {

namespace {

// The time of the latest identifier and the counter within its millisecond. Guarded by
// UIDGenerator::_lock.
struct TimeState {
  UtcTime last;
  int previousMillisecond = 0;
  int counter = 0;
};

TimeState& timeState() {
  static TimeState state;
  return state;
}

// Reads the clock until its millisecond differs from the previous identifier's, sleeping
// 1 ms between reads, so that the counter can start again at 0.
void waitForNextMillisecond(TimeState& state) {
  while (state.last.millisecond == state.previousMillisecond) {
    UIDPlatform::pause();
    state.last = UIDPlatform::now();
  }
}

}  // namespace

bool UIDGenerator::_initialized = false;
std::string UIDGenerator::_prefix;
CriticalSection UIDGenerator::_lock;

void UIDGenerator::initialize(const std::string& first, const std::string& second,
                              const std::string& third) {
  if (_initialized) throw Quiltra::Exception("UIDGenerator::initialize", "INITIALIZED TWICE");
  thread_initcriticalsection(_lock);
  const std::string mac = getMac();
  _prefix =
      first + "." + second + "." + mac + "." + third + "." + std::to_string(getProcID()) + ".";
  _initialized = true;
}

bool UIDGenerator::isInitialized() {
  return _initialized;
}

std::string UIDGenerator::uid() {
  if (!_initialized) throw Quiltra::Exception("UIDGenerator::uid", "NOT INITIALIZED");
  return _prefix + getTimeStr();
}

// The first Ethernet interface by index; its address bytes 0-3 and 4-7, missing ones 0,
// as two big-endian numbers. 00:0C:29:3E:5A:7B gives "796990.1518010368".
std::string UIDGenerator::getMac() {
  std::vector<NetworkInterface> list = UIDPlatform::interfaces();
  std::stable_sort(
      list.begin(), list.end(),
      [](const NetworkInterface& a, const NetworkInterface& b) { return a.index < b.index; });
  const auto ethernet = std::find_if(list.begin(), list.end(), [](const NetworkInterface& entry) {
    return entry.type == kEthernetInterface;
  });
  if (ethernet == list.end()) {
    throw Quiltra::Exception("Quiltra_UIDGenerator::getMac", "CANNOT GET MAC");
  }
  std::uint32_t halves[2] = {0, 0};
  for (std::size_t i = 0; i < 8; ++i) {
    const unsigned char byte = i < ethernet->address.size() ? ethernet->address[i] : 0;
    halves[i / 4] = halves[i / 4] << 8 | byte;
  }
  char text[24];
  std::snprintf(text, sizeof text, "%lu.%lu", static_cast<unsigned long>(halves[0]),
                static_cast<unsigned long>(halves[1]));
  return text;
}

unsigned long UIDGenerator::getProcID() {
  return static_cast<unsigned long>(getpid());
}

// Only the millisecond field is compared: identifiers a whole number of seconds apart with
// equal milliseconds get consecutive counters, which keeps them distinct as well.
std::string UIDGenerator::getTimeStr() {
  char text[64];
  thread_scoped_criticalsection guard(_lock);
  TimeState& state = timeState();
  state.last = UIDPlatform::now();
  const bool sameMillisecond = state.last.millisecond == state.previousMillisecond;
  if (!sameMillisecond || ++state.counter > 99) {
    waitForNextMillisecond(state);  // returns at once for a new millisecond
    state.counter = 0;
    state.previousMillisecond = state.last.millisecond;
  }
  // Formatted under the lock: another caller may change the state as soon as it is left.
  const UtcTime& t = state.last;
  std::snprintf(text, sizeof text, "%04d%02d%02d%02d%02d%02d%03d%02d", t.year, t.month, t.day,
                t.hour, t.minute, t.second, t.millisecond, state.counter);
  return text;
}

void UIDPlatform::resetGenerator() {
  thread_scoped_criticalsection guard(UIDGenerator::_lock);
  UIDGenerator::_initialized = false;
  UIDGenerator::_prefix.clear();
  timeState() = TimeState();
}

}  // namespace Quiltra_Utils
