#include <atomic>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

#include <quiltra/core/Logging.h>

using Quiltra_Utils::logMessage;
using Quiltra_Utils::setLoggingHandler;

namespace {

// A handler is a plain function, so what it sees lives here. Apart from the atomics these
// are touched only inside the handler, that is under the logging lock; ThreadSanitizer
// would report a race if the lock did not serialise the calls.
std::vector<std::string> received;
std::vector<int> levels;
std::atomic<int> inside{0};
std::atomic<int> mostInside{0};

void recordingHandler(std::string message, int level) {
  received.push_back(message);
  levels.push_back(level);
}

void countingHandler(std::string message, int level) {
  const int now = ++inside;
  int most = mostInside.load();
  while (now > most && !mostInside.compare_exchange_weak(most, now)) {
  }
  recordingHandler(message, level);
  --inside;
}

// Logs once more from inside itself, two levels deep.
void reenteringHandler(std::string message, int level) {
  recordingHandler(message, level);
  if (level < 2) {
    logMessage(message + "+", level + 1);
  }
}

class LoggingTest : public testing::Test {
 protected:
  void SetUp() override {
    received.clear();
    levels.clear();
  }
  void TearDown() override { setLoggingHandler(nullptr); }
};

}  // namespace

TEST_F(LoggingTest, LogsNothingWithoutHandler) {
  logMessage("before any handler", 0);
  setLoggingHandler(recordingHandler);
  logMessage("seen", 0);
  setLoggingHandler(nullptr);
  logMessage("after removal", 0);
  EXPECT_EQ(received, std::vector<std::string>{"seen"});
}

TEST_F(LoggingTest, PassesMessageAndLevelUnchanged) {
  setLoggingHandler(recordingHandler);
  logMessage("a\\b\n", 7);
  logMessage("", -3);
  EXPECT_EQ(received, (std::vector<std::string>{"a\\b\n", ""}));
  EXPECT_EQ(levels, (std::vector<int>{7, -3}));
}

TEST_F(LoggingTest, NeverRunsHandlerOnTwoThreadsAtOnce) {
  constexpr int kThreads = 4;
  constexpr int kMessages = 500;
  setLoggingHandler(countingHandler);
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([] {
      for (int i = 0; i < kMessages; ++i) {
        logMessage("busy", 0);
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(mostInside.load(), 1);
  EXPECT_EQ(received.size(), static_cast<std::size_t>(kThreads * kMessages));
}

TEST_F(LoggingTest, HandlerThatLogsReentersWithoutDeadlock) {
  setLoggingHandler(reenteringHandler);
  logMessage("m", 0);
  EXPECT_EQ(received, (std::vector<std::string>{"m", "m+", "m++"}));
  EXPECT_EQ(levels, (std::vector<int>{0, 1, 2}));
}
