#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "pmscan/encoders/byte_file.h"
#include "pmscan/encoders/jpeg_blocks.h"
#include "pmscan/encoders/page_encoder.h"

namespace pmscan {

// A JPEG picture at the end of a file, which is grey or colour of 8 bits a sample.
class JpegPicture {
 public:
  JpegPicture(ByteFile& file, const PageForm& form, std::uint32_t width, std::uint32_t height);

  void WriteLine(std::span<const std::uint8_t> line);

  // The picture is so many lines high, one at least.
  void End(std::uint32_t lines);

 private:
  std::vector<std::uint8_t> Header(std::uint32_t height) const;
  void WriteBlocks();
  JpegBlock BlockAt(std::uint32_t left, std::size_t component) const;

  ByteFile& file_;
  const PageForm form_;
  const std::uint32_t width_;
  const std::uint64_t start_;
  JpegBlocks blocks_;
  std::vector<std::vector<std::uint8_t>> lines_;  // of a row of blocks
};

// The most pixels on each side.
inline constexpr std::uint32_t kMostJpegPixels = 65535;

}  // namespace pmscan
