#include "pmscan/pictures/picture_reader.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <vector>

#include "pmscan/command_line/failure.h"
#include "pmscan/pictures/original_picture.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/windows/imaging_component.h"
#include "pmscan/windows/wide_text.h"

namespace pmscan {
namespace {

// What the component itself takes for pictures that do not tell their resolution.
constexpr double kUsualDotsPerInch = 96;

class PictureReader {
 public:
  explicit PictureReader(const std::string& file) : name_(file) {
    CreateImagingFactory(factory_, kInputFile, name_);
    Require(factory_->CreateDecoderFromFilename(ToWide(file).c_str(), nullptr, GENERIC_READ,
                                                WICDecodeMetadataCacheOnDemand, decoder_.Receive()),
            "open it as a picture");
    Require(decoder_->GetFrame(0, frame_.Receive()), "read its first page");
  }

  simulator::Picture Read();

 private:
  // The samples of every row of the frame, `channels` of them a pixel, stored in `buffer`.
  template <typename Sample>
  void Copy(IWICBitmapSource* source, std::uint32_t channels, std::vector<Sample>& buffer);
  void ReadDeepColour(simulator::Picture& picture);
  void ReadDeepGrey(simulator::Picture& picture);
  void ReadAnything(simulator::Picture& picture);
  void Require(HRESULT result, const char* step) const {
    RequireSuccess(result, kInputFile, step, name_);
  }

  const std::string name_;
  ComPointer<IWICImagingFactory> factory_;
  ComPointer<IWICBitmapDecoder> decoder_;
  ComPointer<IWICBitmapFrameDecode> frame_;
  UINT width_ = 0;
  UINT height_ = 0;
};

simulator::Picture PictureReader::Read() {
  double horizontal = 0;
  double vertical = 0;
  GUID format{};
  Require(frame_->GetSize(&width_, &height_), "read its size");
  Require(frame_->GetResolution(&horizontal, &vertical), "read its resolution");
  Require(frame_->GetPixelFormat(&format), "read its pixel format");
  const double dotsPerInch = horizontal >= 1 ? std::round(horizontal) : kUsualDotsPerInch;
  simulator::Picture picture{width_, height_, static_cast<std::uint32_t>(dotsPerInch), {}};
  if (IsEqualGUID(format, GUID_WICPixelFormat48bppRGB)) {
    ReadDeepColour(picture);
  } else if (IsEqualGUID(format, GUID_WICPixelFormat16bppGray)) {
    ReadDeepGrey(picture);
  } else {
    ReadAnything(picture);
  }
  return picture;
}

template <typename Sample>
void PictureReader::Copy(IWICBitmapSource* source, std::uint32_t channels,
                         std::vector<Sample>& buffer) {
  const std::uint64_t lineBytes = std::uint64_t{width_} * channels * sizeof(Sample);
  const std::uint64_t bytes = lineBytes * height_;
  if (bytes > std::numeric_limits<UINT>::max()) {
    throw Failure(kInputFile, name_ + ": the picture is too large.");
  }
  buffer.resize(bytes / sizeof(Sample));
  Require(source->CopyPixels(nullptr, static_cast<UINT>(lineBytes), static_cast<UINT>(bytes),
                             reinterpret_cast<BYTE*>(buffer.data())),
          "read its pixels");
}

void PictureReader::ReadDeepColour(simulator::Picture& picture) {
  Copy(frame_.Get(), 3, picture.samples);
}

void PictureReader::ReadDeepGrey(simulator::Picture& picture) {
  std::vector<std::uint16_t> grey;
  Copy(frame_.Get(), 1, grey);
  picture.samples.reserve(grey.size() * 3);
  for (const std::uint16_t sample : grey) picture.samples.insert(picture.samples.end(), 3, sample);
}

// By way of pixels with an opacity: some versions of Wine convert grey and indexed ones to nothing
// else.
void PictureReader::ReadAnything(simulator::Picture& picture) {
  constexpr std::uint32_t kChannels = 4;
  ComPointer<IWICFormatConverter> converter;
  Require(factory_->CreateFormatConverter(converter.Receive()), "convert its pixels");
  Require(converter->Initialize(frame_.Get(), GUID_WICPixelFormat32bppBGRA, WICBitmapDitherTypeNone,
                                nullptr, 0.0, WICBitmapPaletteTypeCustom),
          "convert its pixels");
  std::vector<std::uint8_t> bytes;
  Copy(converter.Get(), kChannels, bytes);
  picture.samples = OnWhite(bytes);
}

unsigned OrientationOf(const std::string& file) {
  std::ifstream stream(std::filesystem::path(ToWide(file)), std::ios::binary);
  const std::vector<char> bytes(std::istreambuf_iterator<char>(stream), {});
  return OrientationIn({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

}  // namespace

simulator::Picture ReadPicture(const std::string& file) {
  return Upright(PictureReader(file).Read(), OrientationOf(file));
}

}  // namespace pmscan
