#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "pmscan/encoders/bit_writer.h"

namespace pmscan {

// Compresses the lines of a black-and-white page as ITU-T T.6 has it ("Group 4"): each by what is
// different from the line above.
class FaxEncoder {
 public:
  explicit FaxEncoder(std::uint32_t pageWidth);

  // Eight pixels a byte, the leftmost in the highest bit; 1 is white.
  void WriteLine(std::span<const std::uint8_t> line);

  // The page is complete; fills up the last byte.
  void End();

  // The bytes that are complete, which are forgotten.
  std::vector<std::uint8_t> Take() { return bits_.Take(); }

 private:
  // Where the colour changes in a line that begins white, from left to right; at the end some that
  // stand at the line's width.
  using Changes = std::vector<std::int64_t>;

  Changes ChangesIn(std::span<const std::uint8_t> line) const;
  void PutRun(std::int64_t pixels, bool isBlack);
  void PutHorizontal(std::int64_t start, const std::int64_t* changes, bool isBlack);

  const std::int64_t width_;
  Changes above_;
  BitWriter bits_;
};

}  // namespace pmscan
