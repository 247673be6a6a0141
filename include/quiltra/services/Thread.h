#ifndef QUILTRA_SERVICES_THREAD_H_
#define QUILTRA_SERVICES_THREAD_H_

#include <mutex>

#include <quiltra/core/Export.h>

/// Thin thread, lock and semaphore primitives. None reports a failure of the platform:
/// a thread that cannot start gives a null handle, a semaphore that cannot be made is
/// null, a post beyond 65535 is ignored and a failed timed wait answers false.
namespace Quiltra_Utils {

/// The entry function of a thread; its result is discarded.
using ThreadEntry = unsigned int (*)(void*);

class CriticalSection;

/// Blocks until owned; the owner may enter again.
QUILTRA_EXPORT void thread_entercriticalsection(CriticalSection& section);
QUILTRA_EXPORT void thread_leavecriticalsection(CriticalSection& section);

/// A recursive mutual-exclusion object owned by the caller: the owning thread may enter
/// again and must leave as often as it entered, while other threads block. Shared by the
/// threads it guards; never fails. Not copyable.
class QUILTRA_EXPORT CriticalSection {
 public:
  CriticalSection() = default;
  CriticalSection(const CriticalSection&) = delete;
  CriticalSection& operator=(const CriticalSection&) = delete;

 private:
  friend void thread_entercriticalsection(CriticalSection& section);
  friend void thread_leavecriticalsection(CriticalSection& section);
  std::recursive_mutex _mutex;
};

/// Starts entry(argument) on a new thread at once. Null when the thread cannot start.
QUILTRA_EXPORT void* thread_start(ThreadEntry entry, void* argument);
/// Waits for the thread to end and releases the handle; call once per thread.
QUILTRA_EXPORT void thread_await(void* thread);
/// True while the thread's entry function has not returned. Never blocks.
QUILTRA_EXPORT bool thread_running(void* thread);

/// Kept for symmetry with destroy: a CriticalSection is ready once constructed.
QUILTRA_EXPORT void thread_initcriticalsection(CriticalSection& section);
QUILTRA_EXPORT void thread_destroycriticalsection(CriticalSection& section);

/// A counting semaphore from 0 to 65535, stored in semaphore; null when the initial
/// count is outside that range.
QUILTRA_EXPORT void thread_initsemaphore(void*& semaphore, int initialCount);
/// Frees the semaphore and nulls the variable, so that later calls ignore it.
QUILTRA_EXPORT void thread_destroysemaphore(void*& semaphore);
/// Takes one unit, blocking while the count is 0. Returns at once on a null semaphore.
QUILTRA_EXPORT void thread_waitsemaphore(void*& semaphore);
/// Takes one unit within milliseconds, measured on a monotonic clock; false on time-out.
QUILTRA_EXPORT bool thread_waitsemaphore(void*& semaphore, unsigned long milliseconds);
/// Adds one unit unless the count is already 65535. Touches nothing once the unit can be
/// taken, so its taker may destroy the semaphore at once.
QUILTRA_EXPORT void thread_postsemaphore(void*& semaphore);

/// Enters a critical section for the lifetime of the object, leaving it however the
/// scope ends.
class QUILTRA_EXPORT thread_scoped_criticalsection {
 public:
  explicit thread_scoped_criticalsection(CriticalSection& section);
  ~thread_scoped_criticalsection();
  thread_scoped_criticalsection(const thread_scoped_criticalsection&) = delete;
  thread_scoped_criticalsection& operator=(const thread_scoped_criticalsection&) = delete;

 private:
  CriticalSection* _section;
};

}  // namespace Quiltra_Utils

#endif  // QUILTRA_SERVICES_THREAD_H_
