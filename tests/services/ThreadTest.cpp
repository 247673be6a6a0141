#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>

#include <quiltra/services/Thread.h>

using namespace Quiltra_Utils;

namespace {

struct Semaphore {
  explicit Semaphore(int count) { thread_initsemaphore(handle, count); }
  ~Semaphore() { thread_destroysemaphore(handle); }
  void* handle = nullptr;
};

// Runs a thread that passes once through the section, posts done and returns.
struct Visitor {
  explicit Visitor(CriticalSection& section) : section(section) {}
  ~Visitor() { thread_await(thread); }
  static unsigned int run(void* argument) {
    auto* self = static_cast<Visitor*>(argument);
    { thread_scoped_criticalsection lock(self->section); }
    thread_postsemaphore(self->done.handle);
    return 0;
  }
  CriticalSection& section;
  Semaphore done{0};
  void* thread = thread_start(&Visitor::run, this);  // last, so that it finds the others built
};

}  // namespace

TEST(ThreadTest, RunningTurnsFalseOnlyAfterReenteredSectionIsLeftTwice) {
  CriticalSection section;
  thread_entercriticalsection(section);
  thread_entercriticalsection(section);
  Visitor visitor(section);
  thread_leavecriticalsection(section);
  EXPECT_FALSE(thread_waitsemaphore(visitor.done.handle, 50));  // true only with a broken lock
  EXPECT_TRUE(thread_running(visitor.thread));
  thread_leavecriticalsection(section);
  while (thread_running(visitor.thread)) std::this_thread::yield();  // hangs if it stays true
}

TEST(ThreadTest, ScopedSectionLeavesWhenExceptionPasses) {
  CriticalSection section;
  try {
    thread_scoped_criticalsection lock(section);
    throw std::runtime_error("leave");
  } catch (const std::runtime_error&) {
  }
  Visitor visitor(section);
  thread_waitsemaphore(visitor.done.handle);  // hangs if the section was kept
}

TEST(ThreadTest, TimedWaitTakesOnlyPostedUnitsUpTo65535) {
  Semaphore semaphore(0), full(65535), refused(65536);
  EXPECT_FALSE(thread_waitsemaphore(semaphore.handle, 10));
  thread_postsemaphore(semaphore.handle);
  EXPECT_TRUE(thread_waitsemaphore(semaphore.handle, 10));
  EXPECT_FALSE(thread_waitsemaphore(semaphore.handle, 10));
  thread_postsemaphore(full.handle);
  int taken = 0;
  while (thread_waitsemaphore(full.handle, 0)) ++taken;
  EXPECT_EQ(taken, 65535);
  EXPECT_TRUE(refused.handle == nullptr && Semaphore(-1).handle == nullptr);  // then ignored
  thread_postsemaphore(refused.handle);
  thread_waitsemaphore(refused.handle);
  EXPECT_FALSE(thread_waitsemaphore(refused.handle, 0) || thread_running(nullptr));
}

TEST(ThreadTest, PostDoesNotTouchSemaphoreAfterItsUnitIsTaken) {
  CriticalSection section;
  Visitor visitor(section);
  while (!thread_waitsemaphore(visitor.done.handle, 0)) std::this_thread::yield();
  thread_destroysemaphore(visitor.done.handle);  // the poster used to wake waiters after unlocking
}
