#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

namespace pmddb832::fuzz {

// Numbers taken from the front of a fuzz target's input; 0 when it is used up.
class Input {
 public:
  explicit Input(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  std::uint8_t Byte() {
    const auto taken = Take(1);
    return taken.empty() ? std::uint8_t{0} : taken[0];
  }
  std::uint16_t Word() {
    const std::uint8_t low = Byte();
    return static_cast<std::uint16_t>(Byte() << 8 | low);
  }
  std::span<const std::uint8_t> Take(std::size_t count) {
    const auto taken = bytes_.first(std::min(count, bytes_.size()));
    bytes_ = bytes_.subspan(taken.size());
    return taken;
  }
  std::span<const std::uint8_t> Rest() const { return bytes_; }

 private:
  std::span<const std::uint8_t> bytes_;
};

}  // namespace pmddb832::fuzz
