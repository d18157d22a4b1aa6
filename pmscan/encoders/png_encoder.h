#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pmscan/encoders/byte_file.h"
#include "pmscan/encoders/line_deflater.h"
#include "pmscan/encoders/page_encoder.h"

namespace pmscan {

// A PNG file, which has one page.
class PngEncoder : public PageEncoder {
 public:
  PngEncoder(ByteFile& file, PageForm form);

  void BeginPage(std::uint32_t width, std::uint32_t height) override;
  void WriteLine(std::span<const std::uint8_t> line) override;
  void EndPage(std::uint32_t lines) override;

 private:
  void AppendText(std::string_view keyword, const std::string& text);
  void AppendOrigin();
  void AppendPalette();
  void AppendData();

  ByteFile& file_;
  const PageForm form_;
  std::uint32_t width_ = 0;
  std::optional<LineDeflater> deflater_;
  std::vector<std::uint8_t> data_;  // compressed, not in the file yet
};

}  // namespace pmscan
