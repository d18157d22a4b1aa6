#pragma once

#include <atomic>
#include <cstdint>

namespace pmscan {

enum class Interrupt { kFirst, kSameAgain, kSecond };

// Tells the presses of Ctrl+C apart: one press can come several times, as to the program and to its
// group. May be called from a signal handler, and from several threads at once.
class Interruption {
 public:
  // `milliseconds` is the time of a clock that is never set and begins at 0 or later.
  Interrupt Count(std::int64_t milliseconds) {
    std::int64_t first = kNever;
    if (first_.compare_exchange_strong(first, milliseconds)) return Interrupt::kFirst;
    return milliseconds - first < kOnePress ? Interrupt::kSameAgain : Interrupt::kSecond;
  }

  bool HasCome() const { return first_ != kNever; }

 private:
  static constexpr std::int64_t kNever = -1;
  static constexpr std::int64_t kOnePress = 300;  // milliseconds

  std::atomic<std::int64_t> first_ = kNever;
  static_assert(std::atomic<std::int64_t>::is_always_lock_free);
};

}  // namespace pmscan
