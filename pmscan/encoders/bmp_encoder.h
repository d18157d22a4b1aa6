#pragma once

#include <vector>

#include "pmscan/encoders/byte_file.h"
#include "pmscan/encoders/page_encoder.h"

namespace pmscan {

// A bitmap file, which has one page of at most 8 bits a sample, and no room to tell where it comes
// from. Its lowest line stands first.
class BmpEncoder : public PageEncoder {
 public:
  BmpEncoder(ByteFile& file, PageForm form);

  void BeginPage(std::uint32_t width, std::uint32_t height) override;
  void WriteLine(std::span<const std::uint8_t> line) override;
  void EndPage(std::uint32_t lines) override;

 private:
  std::vector<std::uint8_t> Header(std::uint32_t height) const;
  std::uint64_t PlaceOf(std::uint32_t lineFromBelow) const;
  void MoveDown(std::uint32_t lines);

  ByteFile& file_;
  const PageForm form_;
  std::uint32_t width_ = 0;
  std::uint32_t height_ = 0;
  std::uint32_t lineBytes_ = 0;
  std::uint32_t linesLeft_ = 0;
  std::uint64_t start_ = 0;  // of the lines
  std::vector<std::uint8_t> line_;
};

}  // namespace pmscan
