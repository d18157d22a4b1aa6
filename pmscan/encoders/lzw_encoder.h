#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "pmscan/encoders/bit_writer.h"

namespace pmscan {

// Compresses bytes as TIFF files have it: LZW with codes of 9 to 12 bits.
class LzwEncoder {
 public:
  LzwEncoder();

  void Write(std::span<const std::uint8_t> bytes);

  // All that was written since the last end, which decompresses by itself.
  std::vector<std::uint8_t> End();

 private:
  void Restart();
  void Grow();
  std::uint16_t& PlaceOf(std::uint16_t before, std::uint8_t byte);

  BitWriter bits_;
  unsigned codeBits_ = 0;
  std::uint16_t nextCode_ = 0;
  std::optional<std::uint16_t> held_;  // the code of the bytes that have none in the output yet
  // For bytes of a code and one behind them: both, and the code of all. 0: free.
  std::vector<std::uint32_t> keys_;
  std::vector<std::uint16_t> codes_;
};

}  // namespace pmscan
