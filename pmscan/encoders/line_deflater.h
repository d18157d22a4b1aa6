#pragma once

#include <zlib.h>

#include <cstdint>
#include <span>
#include <vector>

#include "pmscan/scan/scan_mode.h"

namespace pmscan {

// Compresses the lines of a page as PNG files have them, which PDF files can have too: each with
// its filter in front, all of them deflated.
class LineDeflater {
 public:
  LineDeflater(PixelLayout pageLayout, std::size_t lineBytes);
  ~LineDeflater();
  LineDeflater(const LineDeflater&) = delete;
  LineDeflater& operator=(const LineDeflater&) = delete;

  // As the layout has it.
  void WriteLine(std::span<const std::uint8_t> line);

  // The page is complete.
  void End();

  // The compressed bytes that are there, which are forgotten; empty until they are some.
  std::vector<std::uint8_t> Take();

 private:
  void Filter();
  void Deflate(int flush);

  const PixelLayout layout_;
  z_stream stream_{};
  std::vector<std::uint8_t> above_;
  std::vector<std::uint8_t> line_;
  std::vector<std::uint8_t> filtered_;
  std::vector<std::uint8_t> compressed_;
};

}  // namespace pmscan
