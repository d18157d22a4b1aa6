#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pmscan/encoders/byte_file.h"
#include "pmscan/encoders/fax_encoder.h"
#include "pmscan/encoders/jpeg_picture.h"
#include "pmscan/encoders/line_deflater.h"
#include "pmscan/encoders/page_encoder.h"

namespace pmscan {

// A PDF file with a picture on each page, which is as large as what was scanned: line art as
// Group 4, 8 bits of grey and 24 of colour as JPEG, all else deflated.
class PdfEncoder : public PageEncoder {
 public:
  PdfEncoder(ByteFile& file, PageForm form);

  void BeginPage(std::uint32_t width, std::uint32_t height) override;
  void WriteLine(std::span<const std::uint8_t> line) override;
  void EndPage(std::uint32_t lines) override;
  void Finish() override;

 private:
  // Begins an object, and returns its number.
  std::size_t BeginObject();
  // The same of the object that was set aside.
  void BeginObject(std::size_t number);
  void AppendObject(std::string_view body);
  std::string PictureDictionary(std::uint32_t lines, std::uint64_t bytes) const;
  void TakeData();
  void AppendPageOf(std::size_t picture, std::uint32_t lines);
  void AppendCrossReferences(std::size_t catalog, std::size_t information);

  ByteFile& file_;
  const PageForm form_;
  std::vector<std::uint64_t> places_;  // of the objects, from number 1
  std::vector<std::size_t> pages_;     // numbers of their objects
  std::size_t pageTree_ = 0;           // number of the object that lists them

  std::uint32_t width_ = 0;
  std::size_t objectsBefore_ = 0;  // the page
  std::uint64_t pageStart_ = 0;
  std::uint64_t dictionary_ = 0;  // where that of the picture stands
  std::uint64_t data_ = 0;        // and its data
  std::optional<FaxEncoder> fax_;
  std::optional<JpegPicture> jpeg_;
  std::optional<LineDeflater> deflater_;
};

}  // namespace pmscan
