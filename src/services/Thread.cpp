#include "quiltra/services/Thread.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <new>
#include <thread>

namespace Quiltra_Utils {

namespace {

constexpr int kMaxSemaphoreCount = 65535;

// What a thread handle points to. The flag is set when the entry function returns, so
// thread_running can answer without blocking; the handle is freed by thread_await.
struct ThreadHandle {
  std::thread thread;
  std::atomic<bool> finished{false};
};

// What a semaphore variable points to.
struct Semaphore {
  std::mutex mutex;
  std::condition_variable available;
  int count = 0;
};

Semaphore* asSemaphore(void* semaphore) {
  return static_cast<Semaphore*>(semaphore);
}

// Longer limits are cut to this (about 35 years) so that the deadline cannot overflow the
// clock; in practice such a wait has no limit.
constexpr unsigned long long kLongestWaitMs = 1ULL << 40;

}  // namespace

void* thread_start(ThreadEntry entry, void* argument) {
  auto* handle = new (std::nothrow) ThreadHandle();
  if (handle == nullptr) {
    return nullptr;
  }
  try {
    handle->thread = std::thread([handle, entry, argument] {
      entry(argument);
      handle->finished.store(true, std::memory_order_release);
    });
  } catch (const std::exception&) {
    // No thread could be made (std::system_error) or its start-up state not allocated.
    delete handle;
    return nullptr;
  }
  return handle;
}

void thread_await(void* thread) {
  auto* handle = static_cast<ThreadHandle*>(thread);
  if (handle == nullptr) {
    return;
  }
  if (handle->thread.joinable()) {
    handle->thread.join();
  }
  delete handle;
}

bool thread_running(void* thread) {
  const auto* handle = static_cast<const ThreadHandle*>(thread);
  if (handle == nullptr) {
    return false;
  }
  return !handle->finished.load(std::memory_order_acquire);
}

void thread_initcriticalsection(CriticalSection& /*section*/) {}

void thread_entercriticalsection(CriticalSection& section) {
  section._mutex.lock();
}

void thread_leavecriticalsection(CriticalSection& section) {
  section._mutex.unlock();
}

void thread_destroycriticalsection(CriticalSection& /*section*/) {}

void thread_initsemaphore(void*& semaphore, int initialCount) {
  // The platform refuses such a count, leaving no semaphore.
  if (initialCount < 0 || initialCount > kMaxSemaphoreCount) {
    semaphore = nullptr;
    return;
  }
  auto* made = new (std::nothrow) Semaphore();
  if (made != nullptr) {
    made->count = initialCount;
  }
  semaphore = made;
}

void thread_destroysemaphore(void*& semaphore) {
  delete asSemaphore(semaphore);
  semaphore = nullptr;
}

void thread_waitsemaphore(void*& semaphore) {
  Semaphore* target = asSemaphore(semaphore);
  if (target == nullptr) {
    return;
  }
  std::unique_lock<std::mutex> lock(target->mutex);
  target->available.wait(lock, [target] { return target->count > 0; });
  --target->count;
}

bool thread_waitsemaphore(void*& semaphore, unsigned long milliseconds) {
  Semaphore* target = asSemaphore(semaphore);
  if (target == nullptr) {
    return false;
  }
  // A fixed deadline keeps spurious wake-ups from stretching the limit.
  const auto limit = std::chrono::milliseconds(
      static_cast<long long>(std::min<unsigned long long>(milliseconds, kLongestWaitMs)));
  const auto deadline = std::chrono::steady_clock::now() + limit;
  std::unique_lock<std::mutex> lock(target->mutex);
  if (!target->available.wait_until(lock, deadline, [target] { return target->count > 0; })) {
    return false;
  }
  --target->count;
  return true;
}

void thread_postsemaphore(void*& semaphore) {
  Semaphore* target = asSemaphore(semaphore);
  if (target == nullptr) {
    return;
  }
  // Notified under the lock: once a waiter has taken the unit it may destroy the semaphore,
  // so nothing here may touch it after the unlock.
  std::lock_guard<std::mutex> lock(target->mutex);
  if (target->count >= kMaxSemaphoreCount) {
    return;
  }
  ++target->count;
  target->available.notify_one();
}

thread_scoped_criticalsection::thread_scoped_criticalsection(CriticalSection& section)
    : _section(&section) {
  thread_entercriticalsection(*_section);
}

thread_scoped_criticalsection::~thread_scoped_criticalsection() {
  thread_leavecriticalsection(*_section);
}

}  // namespace Quiltra_Utils
