#include "pmscan/pictures/picture_writer.h"

#include <array>

#include "pmscan/command_line/console.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/pictures/packed_colour.h"
#include "pmscan/pictures/picture_copy.h"
#include "pmscan/pictures/png_encoder_probe.h"
#include "pmscan/pictures/sample_order.h"
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

bool IsDeep(PixelLayout layout) {
  return layout == PixelLayout::kGrey16 || layout == PixelLayout::kRgb48;
}

}  // namespace

PictureWriter::PictureWriter(const PictureFile& pictureFile)
    : PictureWriter(pictureFile, GrowingName(pictureFile.name)) {}

PictureWriter::PictureWriter(const PictureFile& pictureFile, const std::string& growingName)
    : file(pictureFile), growing(ToWide(growingName), ToWide(file.name)) {
  CreateImagingFactory(factory, kOutputFile, file.name);
  Require(factory->CreateStream(stream.Receive()), "create a stream");
  Require(stream->InitializeFromFilename(growing.Path(), GENERIC_WRITE), "create the file");
  Require(factory->CreateEncoder(ContainerGuid(file.format.container), nullptr, encoder.Receive()),
          "find an encoder");
  Require(encoder->Initialize(stream.Get(), WICBitmapEncoderNoCache), "begin the file");
  swapsSamples = IsDeep(file.mode.layout) && file.format.container == Container::kPng &&
                 NeedsSwappedSamples(factory);
}

void PictureWriter::BeginPage(std::uint32_t width, std::uint32_t height) {
  pageWidth = width;
  pageHeight = height;
  linesWritten = 0;
  Require(encoder->CreateNewFrame(frame.Receive(), nullptr), "begin the picture");
  Require(frame->Initialize(nullptr), "begin the picture");
  Require(frame->SetSize(width, height), "set the size");
  Require(frame->SetResolution(file.dotsPerInch, file.dotsPerInch), "set the resolution");
  SetPixelFormat(PixelFormat());
}

void PictureWriter::SetPixelFormat(const GUID& wanted) {
  GUID given = wanted;
  Require(frame->SetPixelFormat(&given), "set the pixel format");
  if (!IsEqualGUID(given, wanted)) {
    throw Failure(kUnsupported, "This system cannot write " + std::string(file.format.name) +
                                    " files of " + std::string(file.mode.description) +
                                    ": write a .png file instead.");
  }
  const bool isGrey =
      file.mode.layout == PixelLayout::kGrey8 || file.mode.layout == PixelLayout::kBlackWhite;
  const bool needsGreyPalette = isGrey && file.format.container == Container::kBmp;
  if (needsGreyPalette || file.mode.layout == PixelLayout::kPalette) SetPalette();
}

void PictureWriter::SetPalette() {
  ComPointer<IWICPalette> palette;
  Require(factory->CreatePalette(palette.Receive()), "create a palette");
  if (file.mode.layout == PixelLayout::kPalette) {
    std::array<WICColor, 216> colours = CubeColours();
    Require(palette->InitializeCustom(colours.data(), static_cast<UINT>(colours.size())),
            "create a palette");
  } else {
    const WICBitmapPaletteType type = file.mode.layout == PixelLayout::kGrey8
                                          ? WICBitmapPaletteTypeFixedGray256
                                          : WICBitmapPaletteTypeFixedBW;
    Require(palette->InitializePredefined(type, FALSE), "create a palette");
  }
  Require(frame->SetPalette(palette.Get()), "set the palette");
}

// The two pad bytes that an odd count of packed pixels has at the line's end become a pixel too
// many, which lies beyond the picture's width.
void PictureWriter::Write(std::span<const std::uint8_t> rows, std::uint32_t lineBytes,
                          std::uint32_t lines) {
  if (!file.mode.isPacked) return WritePixels(rows, lineBytes, lines);
  prepared.resize(rows.size() / 2 * 3);
  ExpandColour12(rows, prepared);
  EncodePixels(prepared, lineBytes / 2 * 3, lines);
}

void PictureWriter::WritePixels(std::span<const std::uint8_t> rows, std::uint32_t lineBytes,
                                std::uint32_t lines) {
  if (!swapsSamples) return EncodePixels(rows, lineBytes, lines);
  prepared.resize(rows.size());
  SwapSampleBytes(rows, prepared);
  EncodePixels(prepared, lineBytes, lines);
}

void PictureWriter::EncodePixels(std::span<const std::uint8_t> rows, std::uint32_t lineBytes,
                                 std::uint32_t lines) {
  // The component takes a pointer to non-constant bytes and only reads them.
  Require(frame->WritePixels(lines, lineBytes, static_cast<UINT>(rows.size()),
                             const_cast<BYTE*>(rows.data())),
          "write");
  linesWritten += lines;
}

std::uint32_t PictureWriter::LineBytes(std::uint32_t width) const {
  const std::uint64_t bits = std::uint64_t{width} * PixelBits(file.mode.layout);
  return static_cast<std::uint32_t>((bits + 7) / 8);
}

const GUID& PictureWriter::PixelFormat() const {
  return PixelGuid(file.format.container, file.mode.layout);
}

// The component does not finish a picture that lacks lines.
void PictureWriter::FillPage() {
  const std::uint32_t lineBytes = LineBytes(pageWidth);
  const std::vector<std::uint8_t> line(lineBytes);
  while (linesWritten < pageHeight) EncodePixels(line, lineBytes, 1);
}

void PictureWriter::EndPage(bool isKept) {
  const std::uint32_t lines = linesWritten;
  if (isKept) pageLines.push_back(lines);
  needsTrimming = needsTrimming || !isKept || lines < pageHeight;
  // Nobody will see a file without pages.
  if (HasPages()) {
    FillPage();
    Require(frame->Commit(), "finish the picture");
  }
  frame.Reset();
}

std::uint64_t PictureWriter::Commit() {
  Require(encoder->Commit(), "finish the file");
  encoder.Reset();
  stream.Reset();
  if (needsTrimming) return CommitTrimmed();
  if (file.format.container == Container::kBmp) growing.CorrectBitmapSize();
  const std::uint64_t bytes = growing.Bytes();
  Require(HRESULT_FROM_WIN32(growing.TakePlace(file.mayReplace)), "put the file in its place");
  return bytes;
}

// The height of a page stands in front of its lines, so the file is written anew.
std::uint64_t PictureWriter::CommitTrimmed() {
  PictureWriter trimmed(file, GrowingName(GrowingName(file.name)));
  const PictureCopy copy(factory, growing.Path(), file.name);
  for (std::size_t page = 0; page < pageLines.size(); ++page) {
    copy.CopyPage(static_cast<UINT>(page), pageLines[page], trimmed);
  }
  return trimmed.Commit();
}

void PictureWriter::Require(HRESULT result, const char* step) const {
  RequireSuccess(result, kOutputFile, step, file.name);
}

}  // namespace pmscan
