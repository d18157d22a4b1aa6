#pragma once

#include <cstdint>
#include <vector>

namespace pmscan {

// Puts bits into bytes, the first into the highest bit of the first byte.
class BitWriter {
 public:
  // What stands behind a byte of ones: nothing, or as in JPEG data, a zero byte.
  enum class Behind255 { kNothing, kZero };

  explicit BitWriter(Behind255 rule = Behind255::kNothing) : rule_(rule) {}

  // The lowest `count` bits, at most 24.
  void Put(std::uint32_t bits, unsigned count) {
    held_ = held_ << count | (bits & ((1u << count) - 1));
    for (heldCount_ += count; heldCount_ >= 8; heldCount_ -= 8) {
      const auto byte = static_cast<std::uint8_t>(held_ >> (heldCount_ - 8));
      bytes_.push_back(byte);
      if (byte == 0xFF && rule_ == Behind255::kZero) bytes_.push_back(0);
    }
  }

  // Fills up the last byte.
  void Fill(bool ones) {
    if (heldCount_ > 0) Put(ones ? 0xFF : 0, 8 - heldCount_);
  }

  // The whole bytes, which are forgotten.
  std::vector<std::uint8_t> Take() {
    std::vector<std::uint8_t> taken;
    taken.swap(bytes_);
    return taken;
  }

 private:
  const Behind255 rule_;
  std::vector<std::uint8_t> bytes_;
  std::uint64_t held_ = 0;  // the last bits, of which `heldCount_` are not in a byte yet
  unsigned heldCount_ = 0;
};

}  // namespace pmscan
