#pragma once

#include <cstdint>
#include <vector>

#include "pmscan/scan/acquisition.h"

namespace pmscan {

// The pixels of a delivered line that the picture shows.
struct LineWindow {
  std::uint32_t bitsPerPixel = 0;  // 1 or whole bytes
  std::uint32_t skipped = 0;       // pixels in front of them
  std::uint32_t width = 0;
  bool isFlipped = false;  // the picture shows them from right to left
};

// Passes of every line only the window on.
class WindowSink : public RowSink {
 public:
  WindowSink(const LineWindow& lineWindow, RowSink& sink) : window_(lineWindow), next_(sink) {}

  void Write(std::span<const std::uint8_t> rows, std::uint32_t lineBytes,
             std::uint32_t lines) override;

 private:
  std::uint32_t Place(std::uint32_t pixel) const;
  void CutBits(const std::uint8_t* line, std::uint8_t* target) const;
  void CutBytes(const std::uint8_t* line, std::uint8_t* target) const;

  const LineWindow window_;
  RowSink& next_;
  std::vector<std::uint8_t> cut_;
};

}  // namespace pmscan
