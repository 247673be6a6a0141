#ifndef QUILTRA_IO_NESTINGGUARD_H_
#define QUILTRA_IO_NESTINGGUARD_H_

#include <cstddef>

namespace Quiltra_Serialization {

/// How many levels of sequence items may lie below the top-level Tree being read.
/// Deeper input is refused, so a forged stream cannot exhaust the stack.
inline constexpr std::size_t kMaxNestingDepth = 256;

/// Counts the Trees being read on this thread, for as long as the guard lives.
/// exceeded() tells the reader to refuse the Tree it is about to read.
class NestingGuard {
 public:
  NestingGuard() noexcept { ++depth(); }
  ~NestingGuard() { --depth(); }
  NestingGuard(const NestingGuard&) = delete;
  NestingGuard& operator=(const NestingGuard&) = delete;

  /// True for a Tree lying more than kMaxNestingDepth item levels below the top one.
  bool exceeded() const noexcept { return depth() > kMaxNestingDepth + 1; }

 private:
  static std::size_t& depth() noexcept {
    thread_local std::size_t current = 0;
    return current;
  }
};

}  // namespace Quiltra_Serialization

#endif  // QUILTRA_IO_NESTINGGUARD_H_
