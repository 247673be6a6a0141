#include <atomic>
#include <gtest/gtest.h>
#include <thread>

#include <quiltra/core/Logging.h>

using namespace Quiltra_Utils;

namespace {

// Handlers are plain functions, so what they see lives here. Only the handler touches
// received, so only the logging lock orders it; ThreadSanitizer reports a race otherwise.
std::string received;
std::atomic<int> inside{0};
std::atomic<bool> overlapped{false};

// Records each call; a message that starts with "+" is logged again from inside, up to level 2.
void recordingHandler(std::string message, int level) {
  if (++inside > 1) overlapped = true;
  received += message + "@" + std::to_string(level) + " ";
  --inside;
  if (message[0] == '+' && level < 2) logMessage(message + "+", level + 1);
}

}  // namespace

TEST(LoggingTest, PassesMessageAndLevelUnchangedOnlyWhileAHandlerIsSet) {
  received.clear();
  logMessage("unseen", 0);
  setLoggingHandler(recordingHandler);
  logMessage("a\\b\n", -3);
  setLoggingHandler(nullptr);
  logMessage("unseen", 0);
  EXPECT_EQ(received, "a\\b\n@-3 ");
}

TEST(LoggingTest, NeverRunsHandlerOnTwoThreadsAtOnce) {
  received.clear();
  setLoggingHandler(recordingHandler);
  const auto burst = [] {
    for (int i = 0; i < 1000; ++i) logMessage("m", 0);
  };
  std::thread first(burst), second(burst);
  first.join();
  second.join();
  setLoggingHandler(nullptr);
  EXPECT_FALSE(overlapped);
  EXPECT_EQ(received.size(), 2000 * std::string("m@0 ").size());
}

TEST(LoggingTest, HandlerThatLogsReentersWithoutDeadlock) {
  received.clear();
  setLoggingHandler(recordingHandler);
  logMessage("+", 0);
  setLoggingHandler(nullptr);
  EXPECT_EQ(received, "+@0 ++@1 +++@2 ");
}
