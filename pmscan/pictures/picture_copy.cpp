#include "pmscan/pictures/picture_copy.h"

#include <algorithm>
#include <vector>

#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

constexpr std::uint32_t kBandLines = 64;

}  // namespace

PictureCopy::PictureCopy(const ComPointer<IWICImagingFactory>& factory, const wchar_t* path,
                         const std::string& name)
    : fileName_(name) {
  Require(factory->CreateDecoderFromFilename(path, nullptr, GENERIC_READ,
                                             WICDecodeMetadataCacheOnDemand, decoder_.Receive()),
          "read back what came");
}

void PictureCopy::CopyPage(UINT page, std::uint32_t lines, PictureWriter& writer) const {
  ComPointer<IWICBitmapFrameDecode> frame;
  ComPointer<IWICBitmapSource> source;
  UINT width = 0;
  UINT height = 0;
  Require(decoder_->GetFrame(page, frame.Receive()), "read back a page");
  Require(frame->GetSize(&width, &height), "read back a page");
  Require(WICConvertBitmapSource(writer.PixelFormat(), frame.Get(), source.Receive()),
          "read back its pixels");
  writer.BeginPage(width, lines);
  const std::uint32_t lineBytes = writer.LineBytes(width);
  std::vector<std::uint8_t> rows(std::size_t{lineBytes} * kBandLines);
  for (std::uint32_t line = 0; line < lines; line += kBandLines) {
    const std::uint32_t count = std::min(kBandLines, lines - line);
    const WICRect band{0, static_cast<INT>(line), static_cast<INT>(width), static_cast<INT>(count)};
    const std::uint32_t bytes = lineBytes * count;
    Require(source->CopyPixels(&band, lineBytes, bytes, rows.data()), "read back its pixels");
    writer.WritePixels(std::span(rows).first(bytes), lineBytes, count);
  }
  writer.EndPage();
}

void PictureCopy::Require(HRESULT result, const char* step) const {
  RequireSuccess(result, kOutputFile, step, fileName_);
}

}  // namespace pmscan
