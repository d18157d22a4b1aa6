#pragma once

#include <concepts>
#include <cstdint>
#include <span>

namespace capture {

// Bytes of a file that nobody vouches for, with their byte order: whatever is asked for beyond
// their end is 0, or empty.
class TraceBytes {
 public:
  TraceBytes() = default;
  TraceBytes(std::span<const std::uint8_t> traceBytes, bool isBigEndian)
      : bytes_(traceBytes), isBigEndian_(isBigEndian) {}

  template <std::unsigned_integral Number>
  Number At(std::size_t offset) const {
    if (offset > bytes_.size() || bytes_.size() - offset < sizeof(Number)) return 0;
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
      const std::size_t place = isBigEndian_ ? i : sizeof(Number) - 1 - i;
      number = number << 8 | bytes_[offset + place];
    }
    return static_cast<Number>(number);
  }

  TraceBytes From(std::size_t offset) const {
    return {bytes_.subspan(offset < bytes_.size() ? offset : bytes_.size()), isBigEndian_};
  }
  // At most the first `count` bytes.
  TraceBytes First(std::uint64_t count) const {
    return {bytes_.first(count < bytes_.size() ? static_cast<std::size_t>(count) : bytes_.size()),
            isBigEndian_};
  }

  std::size_t Size() const { return bytes_.size(); }
  std::span<const std::uint8_t> All() const { return bytes_; }
  bool IsBigEndian() const { return isBigEndian_; }

 private:
  std::span<const std::uint8_t> bytes_;
  bool isBigEndian_ = false;
};

}  // namespace capture
