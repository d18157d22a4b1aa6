#pragma once

#include <optional>
#include <string>
#include <vector>

#include "pmscan/encoders/byte_file.h"
#include "pmscan/encoders/fax_encoder.h"
#include "pmscan/encoders/lzw_encoder.h"
#include "pmscan/encoders/page_encoder.h"

namespace pmscan {

// A TIFF file of any number of pages: line art as Group 4, all else as LZW, in strips.
class TiffEncoder : public PageEncoder {
 public:
  TiffEncoder(ByteFile& file, PageForm form);

  void BeginPage(std::uint32_t width, std::uint32_t height) override;
  void WriteLine(std::span<const std::uint8_t> line) override;
  void EndPage(std::uint32_t lines) override;

 private:
  // Its lines are made of differences between pixels, as these compress well.
  bool IsDifferenced() const;
  void AppendStrip(const std::vector<std::uint8_t>& bytes);
  void AppendDirectory(std::uint32_t lines);

  ByteFile& file_;
  const PageForm form_;
  std::optional<FaxEncoder> fax_;
  LzwEncoder lzw_;
  std::vector<std::uint8_t> line_;
  std::uint32_t width_ = 0;
  std::uint32_t stripLines_ = 0;    // of all strips but the last
  std::uint32_t linesInStrip_ = 0;  // of the one that is not in the file yet
  std::uint64_t pageStart_ = 0;
  std::uint64_t link_ = 0;  // where the place of the next directory is told
  std::vector<std::uint32_t> stripPlaces_;
  std::vector<std::uint32_t> stripBytes_;
};

}  // namespace pmscan
