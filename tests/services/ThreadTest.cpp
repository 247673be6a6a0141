#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>

#include <quiltra/services/Thread.h>

using namespace Quiltra_Utils;

namespace {

// Semaphores for handshakes between a test and the thread it starts.
struct Handshake {
  Handshake() {
    thread_initsemaphore(started, 0);
    thread_initsemaphore(release, 0);
  }
  ~Handshake() {
    thread_destroysemaphore(started);
    thread_destroysemaphore(release);
  }
  void* started = nullptr;
  void* release = nullptr;
  CriticalSection* section = nullptr;
};

// Announces itself, then waits to be released before returning.
unsigned int waitForRelease(void* argument) {
  auto* shake = static_cast<Handshake*>(argument);
  thread_postsemaphore(shake->started);
  thread_waitsemaphore(shake->release);
  return 0;
}

// Announces itself, then announces again once it owns the section.
unsigned int enterSection(void* argument) {
  auto* shake = static_cast<Handshake*>(argument);
  thread_postsemaphore(shake->started);
  thread_scoped_criticalsection lock(*shake->section);
  thread_postsemaphore(shake->release);
  return 0;
}

}  // namespace

TEST(ThreadTest, RunningTurnsFalseWhenEntryReturns) {
  Handshake shake;
  void* thread = thread_start(waitForRelease, &shake);
  ASSERT_NE(thread, nullptr);
  thread_waitsemaphore(shake.started);
  EXPECT_TRUE(thread_running(thread));
  thread_postsemaphore(shake.release);
  // Only a bound against hanging: the thread ends as soon as it is released.
  const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (thread_running(thread) && std::chrono::steady_clock::now() < giveUp) {
    std::this_thread::yield();
  }
  EXPECT_FALSE(thread_running(thread));
  thread_await(thread);
}

TEST(ThreadTest, IgnoresNullThreadHandle) {
  EXPECT_FALSE(thread_running(nullptr));
  thread_await(nullptr);
}

TEST(ThreadTest, ReenteredSectionBlocksOthersUntilLeftTwice) {
  Handshake shake;
  CriticalSection section;
  shake.section = &section;
  thread_initcriticalsection(section);
  thread_entercriticalsection(section);
  thread_entercriticalsection(section);
  void* thread = thread_start(enterSection, &shake);
  ASSERT_NE(thread, nullptr);
  thread_waitsemaphore(shake.started);
  thread_leavecriticalsection(section);
  EXPECT_FALSE(thread_waitsemaphore(shake.release, 50));
  thread_leavecriticalsection(section);
  EXPECT_TRUE(thread_waitsemaphore(shake.release, 30000));
  thread_await(thread);
  thread_destroycriticalsection(section);
}

TEST(ThreadTest, ScopedSectionLeavesWhenExceptionPasses) {
  Handshake shake;
  CriticalSection section;
  shake.section = &section;
  try {
    thread_scoped_criticalsection lock(section);
    throw std::runtime_error("leave");
  } catch (const std::runtime_error&) {
  }
  void* thread = thread_start(enterSection, &shake);
  ASSERT_NE(thread, nullptr);
  EXPECT_TRUE(thread_waitsemaphore(shake.release, 30000));
  thread_await(thread);
}

TEST(ThreadTest, TimedWaitTakesOnlyPostedUnits) {
  void* semaphore = nullptr;
  thread_initsemaphore(semaphore, 0);
  ASSERT_NE(semaphore, nullptr);
  const auto before = std::chrono::steady_clock::now();
  EXPECT_FALSE(thread_waitsemaphore(semaphore, 10));
  EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(10));
  thread_postsemaphore(semaphore);
  EXPECT_TRUE(thread_waitsemaphore(semaphore, 10));
  EXPECT_FALSE(thread_waitsemaphore(semaphore, 10));
  thread_destroysemaphore(semaphore);
  EXPECT_EQ(semaphore, nullptr);
}

TEST(ThreadTest, KeepsCountWithinZeroTo65535) {
  void* semaphore = nullptr;
  thread_initsemaphore(semaphore, 2);
  EXPECT_TRUE(thread_waitsemaphore(semaphore, 0));
  thread_waitsemaphore(semaphore);
  EXPECT_FALSE(thread_waitsemaphore(semaphore, 0));
  thread_destroysemaphore(semaphore);

  thread_initsemaphore(semaphore, 65535);
  ASSERT_NE(semaphore, nullptr);
  thread_postsemaphore(semaphore);
  int taken = 0;
  while (thread_waitsemaphore(semaphore, 0)) {
    ++taken;
  }
  EXPECT_EQ(taken, 65535);
  thread_destroysemaphore(semaphore);
}

TEST(ThreadTest, RefusesCountOutsideRangeAndIgnoresNullSemaphore) {
  void* semaphore = &semaphore;
  thread_initsemaphore(semaphore, -1);
  EXPECT_EQ(semaphore, nullptr);
  thread_initsemaphore(semaphore, 65536);
  EXPECT_EQ(semaphore, nullptr);
  thread_postsemaphore(semaphore);
  thread_waitsemaphore(semaphore);
  EXPECT_FALSE(thread_waitsemaphore(semaphore, 0));
  thread_destroysemaphore(semaphore);
  EXPECT_EQ(semaphore, nullptr);
}
