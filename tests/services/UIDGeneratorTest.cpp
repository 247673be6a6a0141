#include "services/UIDPlatform.h"
#include "support/QuiltraTestSupport.h"

#include <cctype>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <sys/types.h>
#include <thread>
#include <unistd.h>
#include <unordered_set>
#include <vector>

#include <quiltra/services/UIDGenerator.h>

using namespace Quiltra_Utils;
using QuiltraTest::expectQuiltraError;

namespace {

constexpr unsigned short kLoopback = 772;  // ARPHRD_LOOPBACK

const std::vector<unsigned char> kWorkedAddress{0x00, 0x0C, 0x29, 0x3E, 0x5A, 0x7B};

std::vector<NetworkInterface> loopbackAndEthernet() {
  return {{1, kLoopback, {0, 0, 0, 0, 0, 0}}, {2, kEthernetInterface, kWorkedAddress}};
}

UtcTime at(int second, int millisecond) {
  return {2023, 5, 17, 10, 30, second, millisecond};
}

// Gives the scripted times in order, then keeps giving the last one; counts the pauses.
struct ScriptedClock {
  std::vector<UtcTime> times;
  std::size_t next = 0;
  int pauses = 0;

  void install() {
    UIDPlatform::setClock(
        [this] { return times[next < times.size() ? next++ : times.size() - 1]; });
    UIDPlatform::setPause([this] { ++pauses; });
  }
};

bool endsWithDigits(const std::string& text, std::size_t count) {
  if (text.size() < count) return false;
  for (std::size_t i = text.size() - count; i < text.size(); ++i) {
    if (!std::isdigit(static_cast<unsigned char>(text[i]))) return false;
  }
  return true;
}

class UIDGeneratorTest : public ::testing::Test {
 protected:
  void SetUp() override {
    UIDPlatform::resetGenerator();
    UIDPlatform::setInterfaceList(loopbackAndEthernet);
  }
  void TearDown() override {
    UIDPlatform::setInterfaceList(nullptr);
    UIDPlatform::setClock(nullptr);
    UIDPlatform::setPause(nullptr);
    UIDPlatform::resetGenerator();
  }

  // The prefix of a freshly initialised generator that sees the given interfaces.
  static std::string prefixFor(std::vector<NetworkInterface> list) {
    UIDPlatform::resetGenerator();
    UIDPlatform::setInterfaceList([list] { return list; });
    UIDGenerator::initialize("1", "2", "3");
    const std::string uid = UIDGenerator::uid();
    return uid.substr(0, uid.size() - 19);
  }

  static const std::string& pid() {
    static const std::string text = std::to_string(getpid());
    return text;
  }
};

}  // namespace

TEST_F(UIDGeneratorTest, RefusesUidBeforeInitializeAndASecondInitialize) {
  EXPECT_FALSE(UIDGenerator::isInitialized());
  expectQuiltraError([] { UIDGenerator::uid(); }, "UIDGenerator::uid", "NOT INITIALIZED");

  UIDGenerator::initialize("1.2.3", "4", "5");
  EXPECT_TRUE(UIDGenerator::isInitialized());
  expectQuiltraError([] { UIDGenerator::initialize("9", "9", "9"); }, "UIDGenerator::initialize",
                     "INITIALIZED TWICE");
  EXPECT_EQ(UIDGenerator::uid().rfind("1.2.3.4.", 0), 0u);  // the first prefix is kept
}

TEST_F(UIDGeneratorTest, BuildsPrefixFromTextsHardwareAddressAndProcessId) {
  UIDGenerator::initialize("1.2.3", "4", "5");
  const std::string uid = UIDGenerator::uid();
  const std::string prefix = "1.2.3.4.796990.1518010368.5." + pid() + ".";
  EXPECT_EQ(uid.substr(0, prefix.size()), prefix);
  EXPECT_EQ(uid.size(), prefix.size() + 19);
  EXPECT_TRUE(endsWithDigits(uid, 19)) << uid;
}

TEST_F(UIDGeneratorTest, TakesTheFirstEthernetInterfaceByIndexAndPadsTheAddressWithZeros) {
  const std::string tail = ".3." + pid() + ".";
  // Listed out of index order: index 4 comes first; the loopback at 3 is passed over.
  EXPECT_EQ(prefixFor({{7, kEthernetInterface, {1, 2, 3, 4, 5, 6}},
                       {3, kLoopback, {}},
                       {4, kEthernetInterface, kWorkedAddress}}),
            "1.2.796990.1518010368" + tail);
  // Bytes beyond the address length count as 0; at most 8 bytes are used.
  EXPECT_EQ(prefixFor({{1, kEthernetInterface, {0xC0, 0xA8, 0x01, 0x02}}}),
            "1.2.3232235778.0" + tail);
  EXPECT_EQ(prefixFor({{1, kEthernetInterface, {}}}), "1.2.0.0" + tail);
  EXPECT_EQ(prefixFor({{1, kEthernetInterface, {0xFF, 0xFF, 0xFF, 0xFF, 1, 2, 3, 4, 9, 9}}}),
            "1.2.4294967295.16909060" + tail);
}

TEST_F(UIDGeneratorTest, CannotGetMacWithoutEthernetAndStaysUninitialised) {
  for (const auto& list : {std::vector<NetworkInterface>{},
                           std::vector<NetworkInterface>{{1, kLoopback, {0, 0, 0, 0, 0, 0}},
                                                         {2, 32 /* InfiniBand */, {1, 2}}}}) {
    UIDPlatform::setInterfaceList([list] { return list; });
    expectQuiltraError([] { UIDGenerator::initialize("1", "2", "3"); },
                       "Quiltra_UIDGenerator::getMac", "CANNOT GET MAC");
    EXPECT_FALSE(UIDGenerator::isInitialized());
    expectQuiltraError([] { UIDGenerator::uid(); }, "UIDGenerator::uid", "NOT INITIALIZED");
  }
  UIDPlatform::setInterfaceList(loopbackAndEthernet);
  UIDGenerator::initialize("1", "2", "3");  // a failed attempt does not count as the one
  EXPECT_TRUE(UIDGenerator::isInitialized());
}

TEST_F(UIDGeneratorTest, CountsToNinetyNineWithinOneMillisecondThenWaitsForTheClock) {
  ScriptedClock clock;
  // 100 identifiers at .123; the 101st reads .123 too, then pauses and reads again until
  // the fourth read after a pause gives .124.
  clock.times.assign(104, at(15, 123));
  clock.times.push_back(at(15, 124));
  clock.install();
  UIDGenerator::initialize("1", "2", "3");

  for (int k = 0; k < 100; ++k) {
    const std::string uid = UIDGenerator::uid();
    char expected[24];
    std::snprintf(expected, sizeof expected, "20230517103015123%02d", k);
    ASSERT_EQ(uid.substr(uid.size() - 19), expected);
  }
  EXPECT_EQ(clock.pauses, 0);
  const std::string hundredFirst = UIDGenerator::uid();
  EXPECT_EQ(hundredFirst.substr(hundredFirst.size() - 19), "2023051710301512400");
  EXPECT_EQ(clock.pauses, 4);
  const std::string next = UIDGenerator::uid();
  EXPECT_EQ(next.substr(next.size() - 19), "2023051710301512401");
}

TEST_F(UIDGeneratorTest, ComparesOnlyTheMillisecondField) {
  ScriptedClock clock;
  // The previous millisecond starts at 0, so a first identifier at .000 counts on from it.
  clock.times = {at(14, 0), at(15, 123), at(16, 123), at(16, 124)};
  clock.install();
  UIDGenerator::initialize("1", "2", "3");
  std::vector<std::string> tails;
  for (int i = 0; i < 4; ++i) {
    const std::string uid = UIDGenerator::uid();
    tails.push_back(uid.substr(uid.size() - 19));
  }
  EXPECT_EQ(tails, (std::vector<std::string>{"2023051710301400001", "2023051710301512300",
                                             "2023051710301612301", "2023051710301612400"}));
  EXPECT_EQ(clock.pauses, 0);
}

TEST_F(UIDGeneratorTest, EightThreadsMakeFourHundredThousandDistinctIdentifiers) {
  UIDGenerator::initialize("1.2.3", "4", "5");  // the system clock and pause
  constexpr int kThreads = 8;
  constexpr int kPerThread = 50000;
  std::vector<std::vector<std::string>> made(kThreads);
  std::vector<std::thread> threads;
  for (auto& list : made) {
    threads.emplace_back([&list] {
      list.reserve(kPerThread);
      for (int i = 0; i < kPerThread; ++i) list.push_back(UIDGenerator::uid());
    });
  }
  for (auto& thread : threads) thread.join();

  const std::string prefix = "1.2.3.4.796990.1518010368.5." + pid() + ".";
  std::unordered_set<std::string> distinct;
  for (const auto& list : made) {
    for (const auto& uid : list) {
      distinct.insert(uid);
      if (uid.size() != prefix.size() + 19 || uid.compare(0, prefix.size(), prefix) != 0) {
        FAIL() << "malformed identifier " << uid;
      }
    }
  }
  EXPECT_EQ(distinct.size(), static_cast<std::size_t>(kThreads * kPerThread));
}

TEST(UIDPlatformTest, SystemSourcesMatchTheKernelsViews) {
  const UtcTime now = UIDPlatform::systemClock();
  tm broken{};
  broken.tm_year = now.year - 1900;
  broken.tm_mon = now.month - 1;
  broken.tm_mday = now.day;
  broken.tm_hour = now.hour;
  broken.tm_min = now.minute;
  broken.tm_sec = now.second;
  EXPECT_LE(std::labs(static_cast<long>(timegm(&broken) - std::time(nullptr))), 60L);
  EXPECT_GE(now.millisecond, 0);
  EXPECT_LE(now.millisecond, 999);

  // Every interface the kernel lists under /sys/class/net, with its index and type.
  const std::filesystem::path net("/sys/class/net");
  std::error_code error;
  if (!std::filesystem::is_directory(net, error)) GTEST_SKIP() << "no /sys/class/net";
  std::map<int, unsigned short> kernel;
  for (const auto& entry : std::filesystem::directory_iterator(net, error)) {
    int index = 0;
    unsigned short type = 0;
    std::ifstream(entry.path() / "ifindex") >> index;
    std::ifstream(entry.path() / "type") >> type;
    kernel[index] = type;
  }
  std::map<int, unsigned short> listed;
  for (const NetworkInterface& entry : UIDPlatform::systemInterfaces()) {
    listed[entry.index] = entry.type;
    EXPECT_LE(entry.address.size(), 8u);
  }
  EXPECT_EQ(listed, kernel);
}
