#ifndef QUILTRA_TESTS_SUPPORT_ALLOCATIONWATCH_H_
#define QUILTRA_TESTS_SUPPORT_ALLOCATIONWATCH_H_

// Replaces the global operator new and delete of the test program one of whose files
// includes this header (one file per program only): every allocation of the program is
// counted, the largest size is remembered, and one allocation can be made to fail.

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace QuiltraTest {

/// Allocations made so far.
inline std::atomic<long> allocationCount{0};
/// The largest size asked for so far.
inline std::atomic<std::size_t> largestAllocation{0};
/// When armed with n >= 0, the allocation n allocations later fails (n = 0: the next one)
/// and disarms; -1 leaves every allocation alone.
inline std::atomic<long> allocationsBeforeFailure{-1};

}  // namespace QuiltraTest

void* operator new(std::size_t size) {
  ++QuiltraTest::allocationCount;
  std::size_t largest = QuiltraTest::largestAllocation.load();
  while (size > largest && !QuiltraTest::largestAllocation.compare_exchange_weak(largest, size)) {
  }
  long left = QuiltraTest::allocationsBeforeFailure.load();
  while (left >= 0 &&
         !QuiltraTest::allocationsBeforeFailure.compare_exchange_weak(left, left - 1)) {
  }
  if (left == 0) throw std::bad_alloc();
  if (void* block = std::malloc(size == 0 ? 1 : size)) return block;
  throw std::bad_alloc();
}

// Kept out of line, so that the compiler does not meet free() next to a new expression.
[[gnu::noinline]] void operator delete(void* block) noexcept {
  std::free(block);
}

[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}

#endif  // QUILTRA_TESTS_SUPPORT_ALLOCATIONWATCH_H_
