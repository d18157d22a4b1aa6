#include "pmscan/pictures/picture_writer.h"

#include <array>

#include "pmscan/command_line/console.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/pictures/picture_copy.h"
#include "pmscan/pictures/picture_pixels.h"
#include "pmscan/pictures/png_encoder_probe.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/scan/page_names.h"

namespace pmscan {
namespace {

const GUID& ContainerGuid(Container container) {
  switch (container) {
    case Container::kTiff:
      return GUID_ContainerFormatTiff;
    case Container::kBmp:
      return GUID_ContainerFormatBmp;
    case Container::kJpeg:
      return GUID_ContainerFormatJpeg;
    default:
      return GUID_ContainerFormatPng;
  }
}

// A bitmap file has no black-and-white or grey format of its own, only indices into a palette.
const GUID& PixelGuid(Container container, PixelLayout layout) {
  const bool needsPalette = container == Container::kBmp;
  switch (layout) {
    case PixelLayout::kBlackWhite:
      return needsPalette ? GUID_WICPixelFormat1bppIndexed : GUID_WICPixelFormatBlackWhite;
    case PixelLayout::kGrey8:
      return needsPalette ? GUID_WICPixelFormat8bppIndexed : GUID_WICPixelFormat8bppGray;
    case PixelLayout::kPalette:
      return GUID_WICPixelFormat8bppIndexed;
    case PixelLayout::kGrey16:
      return GUID_WICPixelFormat16bppGray;
    case PixelLayout::kRgb48:
      return GUID_WICPixelFormat48bppRGB;
    default:
      return GUID_WICPixelFormat24bppBGR;
  }
}

// The colours of mode palette.
std::array<WICColor, 216> CubeColours() {
  constexpr WICColor kOpaque = 0xFF000000;
  constexpr WICColor kStep = 0x33;
  std::array<WICColor, 216> colours{};
  for (WICColor i = 0; i < colours.size(); ++i) {
    colours[i] = kOpaque | (i / 36 * kStep) << 16 | (i / 6 % 6 * kStep) << 8 | i % 6 * kStep;
  }
  return colours;
}

std::uint32_t PixelBits(PixelLayout layout) {
  switch (layout) {
    case PixelLayout::kBlackWhite:
      return 1;
    case PixelLayout::kGrey8:
    case PixelLayout::kPalette:
      return 8;
    case PixelLayout::kGrey16:
      return 16;
    case PixelLayout::kRgb48:
      return 48;
    default:
      return 24;
  }
}

}  // namespace

PictureWriter::PictureWriter(const PictureFile& pictureFile)
    : PictureWriter(pictureFile, GrowingName(pictureFile.name)) {}

PictureWriter::PictureWriter(const PictureFile& pictureFile, const std::string& growingName)
    : file_(pictureFile), growing_(ToWide(growingName), ToWide(file_.name)) {
  CreateImagingFactory(factory_, kOutputFile, file_.name);
  Require(factory_->CreateStream(stream_.Receive()), "create a stream");
  Require(stream_->InitializeFromFilename(growing_.Path(), GENERIC_WRITE), "create the file");
  Require(
      factory_->CreateEncoder(ContainerGuid(file_.format.container), nullptr, encoder_.Receive()),
      "find an encoder");
  Require(encoder_->Initialize(stream_.Get(), WICBitmapEncoderNoCache), "begin the file");
  swapsSamples_ = IsDeep(file_.mode.layout) && file_.format.container == Container::kPng &&
                  NeedsSwappedSamples(factory_);
}

void PictureWriter::BeginPage(std::uint32_t width, std::uint32_t height) {
  pageWidth_ = width;
  pageHeight_ = height;
  linesWritten_ = 0;
  Require(encoder_->CreateNewFrame(frame_.Receive(), nullptr), "begin the picture");
  Require(frame_->Initialize(nullptr), "begin the picture");
  Require(frame_->SetSize(width, height), "set the size");
  Require(frame_->SetResolution(file_.dotsPerInch, file_.dotsPerInch), "set the resolution");
  SetPixelFormat(PixelFormat());
}

void PictureWriter::SetPixelFormat(const GUID& wanted) {
  GUID given = wanted;
  Require(frame_->SetPixelFormat(&given), "set the pixel format");
  if (!IsEqualGUID(given, wanted)) {
    throw Failure(kUnsupported, "This system cannot write " + std::string(file_.format.name) +
                                    " files of " + std::string(file_.mode.description) +
                                    ": write a .png file instead.");
  }
  const bool isGrey =
      file_.mode.layout == PixelLayout::kGrey8 || file_.mode.layout == PixelLayout::kBlackWhite;
  const bool needsGreyPalette = isGrey && file_.format.container == Container::kBmp;
  if (needsGreyPalette || file_.mode.layout == PixelLayout::kPalette) SetPalette();
}

void PictureWriter::SetPalette() {
  ComPointer<IWICPalette> palette;
  Require(factory_->CreatePalette(palette.Receive()), "create a palette");
  if (file_.mode.layout == PixelLayout::kPalette) {
    std::array<WICColor, 216> colours = CubeColours();
    Require(palette->InitializeCustom(colours.data(), static_cast<UINT>(colours.size())),
            "create a palette");
  } else {
    const WICBitmapPaletteType type = file_.mode.layout == PixelLayout::kGrey8
                                          ? WICBitmapPaletteTypeFixedGray256
                                          : WICBitmapPaletteTypeFixedBW;
    Require(palette->InitializePredefined(type, FALSE), "create a palette");
  }
  Require(frame_->SetPalette(palette.Get()), "set the palette");
}

// The two pad bytes that an odd count of packed pixels has at the line's end become a pixel too
// many, which lies beyond the picture's width.
void PictureWriter::Write(std::span<const std::uint8_t> rows, std::uint32_t, std::uint32_t lines) {
  const auto pixels = PicturePixels(rows, file_.mode, file_.sampleBits, converted_);
  WritePixels(pixels, static_cast<std::uint32_t>(pixels.size() / lines), lines);
}

void PictureWriter::WritePixels(std::span<const std::uint8_t> rows, std::uint32_t lineBytes,
                                std::uint32_t lines) {
  if (!swapsSamples_) return EncodePixels(rows, lineBytes, lines);
  swapped_.resize(rows.size());
  SwapSampleBytes(rows, swapped_);
  EncodePixels(swapped_, lineBytes, lines);
}

void PictureWriter::EncodePixels(std::span<const std::uint8_t> rows, std::uint32_t lineBytes,
                                 std::uint32_t lines) {
  // The component takes a pointer to non-constant bytes and only reads them.
  Require(frame_->WritePixels(lines, lineBytes, static_cast<UINT>(rows.size()),
                              const_cast<BYTE*>(rows.data())),
          "write");
  linesWritten_ += lines;
}

std::uint32_t PictureWriter::LineBytes(std::uint32_t width) const {
  const std::uint64_t bits = std::uint64_t{width} * PixelBits(file_.mode.layout);
  return static_cast<std::uint32_t>((bits + 7) / 8);
}

const GUID& PictureWriter::PixelFormat() const {
  return PixelGuid(file_.format.container, file_.mode.layout);
}

// The component does not finish a picture that lacks lines.
void PictureWriter::FillPage() {
  const std::uint32_t lineBytes = LineBytes(pageWidth_);
  const std::vector<std::uint8_t> line(lineBytes);
  while (linesWritten_ < pageHeight_) EncodePixels(line, lineBytes, 1);
}

void PictureWriter::EndPage(bool isKept) {
  const std::uint32_t lines = linesWritten_;
  if (isKept) pageLines_.push_back(lines);
  needsTrimming_ = needsTrimming_ || !isKept || lines < pageHeight_;
  // Nobody will see a file without pages.
  if (HasPages()) {
    FillPage();
    Require(frame_->Commit(), "finish the picture");
  }
  frame_.Reset();
}

std::uint64_t PictureWriter::Commit() {
  Require(encoder_->Commit(), "finish the file");
  encoder_.Reset();
  stream_.Reset();
  if (needsTrimming_) return CommitTrimmed();
  if (file_.format.container == Container::kBmp) growing_.CorrectBitmapSize();
  const std::uint64_t bytes = growing_.Bytes();
  Require(HRESULT_FROM_WIN32(growing_.TakePlace(file_.mayReplace)), "put the file in its place");
  return bytes;
}

// The height of a page stands in front of its lines, so the file is written anew.
std::uint64_t PictureWriter::CommitTrimmed() {
  PictureWriter trimmed(file_, GrowingName(GrowingName(file_.name)));
  const PictureCopy copy(factory_, growing_.Path(), file_.name);
  for (std::size_t page = 0; page < pageLines_.size(); ++page) {
    copy.CopyPage(static_cast<UINT>(page), pageLines_[page], trimmed);
  }
  return trimmed.Commit();
}

void PictureWriter::Require(HRESULT result, const char* step) const {
  RequireSuccess(result, kOutputFile, step, file_.name);
}

}  // namespace pmscan
