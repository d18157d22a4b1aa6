#include "pmscan/encoders/jpeg_picture.h"

#include <algorithm>
#include <string_view>

#include "pmscan/command_line/failure.h"
#include "pmscan/encoders/byte_order.h"
#include "pmscan/encoders/jpeg_tables.h"
#include "pmscan/encoders/tiff_directory.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Markers.
constexpr std::uint8_t kStart = 0xD8;
constexpr std::uint8_t kEnd = 0xD9;
constexpr std::uint8_t kJfif = 0xE0;
constexpr std::uint8_t kExif = 0xE1;
constexpr std::uint8_t kSteps = 0xDB;
constexpr std::uint8_t kFrame = 0xC0;
constexpr std::uint8_t kCodes = 0xC4;
constexpr std::uint8_t kScan = 0xDA;

void AppendSegment(Bytes& target, std::uint8_t marker, const Bytes& data) {
  target.insert(target.end(), {0xFF, marker});
  AppendBig(target, static_cast<std::uint32_t>(data.size() + 2), 2);
  target.insert(target.end(), data.begin(), data.end());
}

Bytes Jfif(std::uint32_t dotsPerInch) {
  Bytes data{'J', 'F', 'I', 'F', 0, 1, 1, 1};
  AppendBig(data, dotsPerInch, 2);
  AppendBig(data, dotsPerInch, 2);
  data.insert(data.end(), {0, 0});  // no small picture
  return data;
}

Bytes Exif(const PictureOrigin& origin) {
  TiffDirectory directory;
  directory.AddScanner(origin);
  directory.AddSoftwareAndDate(origin);
  const Bytes header = TiffHeader();
  const Bytes entries = directory.Bytes(static_cast<std::uint32_t>(header.size()));
  Bytes data{'E', 'x', 'i', 'f', 0, 0};
  data.insert(data.end(), header.begin(), header.end());
  data.insert(data.end(), entries.begin(), entries.end());
  return data;
}

Bytes Steps(const JpegBlocks& blocks) {
  Bytes data{0};
  for (const std::uint8_t place : kJpegZigzag) data.push_back(blocks.Steps()[place]);
  return data;
}

Bytes Frame(std::uint32_t width, std::uint32_t height, std::uint8_t components) {
  Bytes data{8};  // bits
  AppendBig(data, height, 2);
  AppendBig(data, width, 2);
  data.push_back(components);
  for (std::uint8_t i = 1; i <= components; ++i) data.insert(data.end(), {i, 0x11, 0});
  return data;
}

template <typename Lengths, typename Values>
Bytes Codes(std::uint8_t number, const Lengths& lengths, const Values& values) {
  Bytes data{number};
  data.insert(data.end(), lengths.begin(), lengths.end());
  data.insert(data.end(), values.begin(), values.end());
  return data;
}

Bytes Scan(std::uint8_t components) {
  Bytes data{components};
  for (std::uint8_t i = 1; i <= components; ++i) data.insert(data.end(), {i, 0x00});
  data.insert(data.end(), {0, 63, 0});
  return data;
}

// Weights of blue, green and red in brightness, and the differences of blue and red from it.
constexpr float kWeights[3][3] = {
    {0.114f, 0.587f, 0.299f}, {0.5f, -0.331264f, -0.168736f}, {-0.081312f, -0.418688f, 0.5f}};
constexpr float kMiddle = 128;

}  // namespace

JpegPicture::JpegPicture(ByteFile& file, const PageForm& form, std::uint32_t width,
                         std::uint32_t height)
    : file_(file), form_(form), width_(width), start_(file.Size()), blocks_(form.quality) {
  if (width > kMostJpegPixels || height > kMostJpegPixels) {
    throw Failure(kUnsupported, file.Name() + ": a JPEG picture has at most " +
                                    std::to_string(kMostJpegPixels) +
                                    " pixels on each side; write a .png or .tif file.");
  }
  file_.Append(Header(height));
}

std::vector<std::uint8_t> JpegPicture::Header(std::uint32_t height) const {
  const auto components = static_cast<std::uint8_t>(SamplesPerPixel(form_.layout));
  Bytes header{0xFF, kStart};
  AppendSegment(header, kJfif, Jfif(form_.dotsPerInch));
  AppendSegment(header, kExif, Exif(form_.origin));
  AppendSegment(header, kSteps, Steps(blocks_));
  AppendSegment(header, kFrame, Frame(width_, height, components));
  AppendSegment(header, kCodes, Codes(0x00, kJpegDcLengths, kJpegDcValues));
  AppendSegment(header, kCodes, Codes(0x10, kJpegAcLengths, kJpegAcValues));
  AppendSegment(header, kScan, Scan(components));
  return header;
}

void JpegPicture::WriteLine(std::span<const std::uint8_t> line) {
  lines_.emplace_back(line.begin(), line.end());
  if (lines_.size() == kJpegBlock) WriteBlocks();
}

// Pixels beyond the picture are as the last ones in it.
JpegBlock JpegPicture::BlockAt(std::uint32_t left, std::size_t component) const {
  const bool isGrey = form_.layout == PixelLayout::kGrey8;
  const auto& weights = kWeights[component];
  JpegBlock block;
  for (std::size_t i = 0; i < block.size(); ++i) {
    const auto& line = lines_[std::min(i / kJpegBlock, lines_.size() - 1)];
    const std::size_t x = std::min<std::size_t>(left + i % kJpegBlock, width_ - 1);
    const std::uint8_t* const pixel = &line[isGrey ? x : 3 * x];
    float sample = isGrey ? static_cast<float>(*pixel) : 0;
    for (std::size_t channel = 0; !isGrey && channel < 3; ++channel) {
      sample += weights[channel] * static_cast<float>(pixel[channel]);
    }
    block[i] = component == 0 ? sample - kMiddle : sample;
  }
  return block;
}

void JpegPicture::WriteBlocks() {
  for (std::uint32_t left = 0; left < width_; left += kJpegBlock) {
    for (std::size_t component = 0; component < SamplesPerPixel(form_.layout); ++component) {
      JpegBlock block = BlockAt(left, component);
      blocks_.Write(block, component);
    }
  }
  file_.Append(blocks_.Take());
  lines_.clear();
}

void JpegPicture::End(std::uint32_t lines) {
  if (!lines_.empty()) WriteBlocks();
  blocks_.End();
  file_.Append(blocks_.Take());
  file_.Append(Bytes{0xFF, kEnd});
  file_.WriteAt(start_, Header(lines));
}

}  // namespace pmscan
