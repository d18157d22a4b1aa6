#pragma once

#include <optional>

#include "pmscan/encoders/jpeg_picture.h"

namespace pmscan {

// A JPEG file, which has one page.
class JpegEncoder : public PageEncoder {
 public:
  JpegEncoder(ByteFile& file, PageForm form) : file_(file), form_(std::move(form)) {}

  void BeginPage(std::uint32_t width, std::uint32_t height) override {
    picture_.emplace(file_, form_, width, height);
  }
  void WriteLine(std::span<const std::uint8_t> line) override { picture_->WriteLine(line); }
  void EndPage(std::uint32_t lines) override {
    if (lines > 0) picture_->End(lines);
  }

 private:
  ByteFile& file_;
  const PageForm form_;
  std::optional<JpegPicture> picture_;
};

}  // namespace pmscan
