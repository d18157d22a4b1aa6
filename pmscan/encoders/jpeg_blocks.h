#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "pmscan/encoders/bit_writer.h"

namespace pmscan {

inline constexpr std::uint32_t kJpegBlock = 8;  // pixels on each side

// Samples row by row, 0 in the middle of their range.
using JpegBlock = std::array<float, 64>;

// Compresses blocks of samples as baseline JPEG has it.
class JpegBlocks {
 public:
  // 1 to 100; the size of the steps in which light is told.
  explicit JpegBlocks(std::uint32_t quality);

  // The steps, row by row.
  const std::array<std::uint8_t, 64>& Steps() const { return steps_; }

  // The next block of a component, 0 to 2. `samples` are used up.
  void Write(JpegBlock& samples, std::size_t component);

  // Fills up the last byte.
  void End() { bits_.Fill(true); }

  // The bytes that are complete, which are forgotten.
  std::vector<std::uint8_t> Take() { return bits_.Take(); }

 private:
  // The bits of each value, and how many they are.
  struct Code {
    std::uint16_t bits = 0;
    std::uint8_t length = 0;
  };
  using Codes = std::array<Code, 256>;

  template <typename Lengths, typename Values>
  static Codes CodesOf(const Lengths& lengths, const Values& values);
  void PutAmount(const Codes& codes, unsigned zeros, int amount);
  void Put(const Code& code) { bits_.Put(code.bits, code.length); }

  const Codes dcCodes_;
  const Codes acCodes_;
  std::array<std::uint8_t, 64> steps_{};
  std::array<float, 64> scale_{};  // of the transformed samples, to steps
  std::array<int, 3> lastDc_{};
  BitWriter bits_{BitWriter::Behind255::kZero};
};

}  // namespace pmscan
