#include "pmscan/picture_writer.h"

#include <array>

#include "pmscan/console.h"
#include "pmscan/error_codes.h"
#include "pmscan/failure.h"
#include "pmscan/packed_colour.h"
#include "pmscan/png_encoder_probe.h"
#include "pmscan/sample_order.h"

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

bool IsDeep(PixelLayout layout) {
  return layout == PixelLayout::kGrey16 || layout == PixelLayout::kRgb48;
}

}  // namespace

PictureWriter::PictureWriter(const std::string& file, const PictureFormat& pictureFormat,
                             const ScanMode& scanMode, std::uint32_t width, std::uint32_t height,
                             std::uint32_t dotsPerInch)
    : name(file), growing(ToWide(file)), format(pictureFormat), mode(scanMode) {
  CreateImagingFactory(factory, kOutputFile, name);
  Require(factory->CreateStream(stream.Receive()), "create a stream");
  Require(stream->InitializeFromFilename(growing.Path(), GENERIC_WRITE), "create the file");
  OpenFrame(width, height, dotsPerInch);
  swapsSamples =
      IsDeep(mode.layout) && format.container == Container::kPng && NeedsSwappedSamples(factory);
}

void PictureWriter::OpenFrame(std::uint32_t width, std::uint32_t height,
                              std::uint32_t dotsPerInch) {
  Require(factory->CreateEncoder(ContainerGuid(format.container), nullptr, encoder.Receive()),
          "find an encoder");
  Require(encoder->Initialize(stream.Get(), WICBitmapEncoderNoCache), "begin the file");
  Require(encoder->CreateNewFrame(frame.Receive(), nullptr), "begin the picture");
  Require(frame->Initialize(nullptr), "begin the picture");
  Require(frame->SetSize(width, height), "set the size");
  Require(frame->SetResolution(dotsPerInch, dotsPerInch), "set the resolution");
  SetPixelFormat(PixelGuid(format.container, mode.layout));
}

void PictureWriter::SetPixelFormat(const GUID& wanted) {
  GUID given = wanted;
  Require(frame->SetPixelFormat(&given), "set the pixel format");
  if (!IsEqualGUID(given, wanted)) {
    throw Failure(kUnsupported, "This system cannot write " + std::string(format.name) +
                                    " files of " + std::string(mode.description) +
                                    ": write a .png file instead.");
  }
  const bool isGrey = mode.layout == PixelLayout::kGrey8 || mode.layout == PixelLayout::kBlackWhite;
  const bool needsGreyPalette = isGrey && format.container == Container::kBmp;
  if (needsGreyPalette || mode.layout == PixelLayout::kPalette) SetPalette();
}

void PictureWriter::SetPalette() {
  ComPointer<IWICPalette> palette;
  Require(factory->CreatePalette(palette.Receive()), "create a palette");
  if (mode.layout == PixelLayout::kPalette) {
    std::array<WICColor, 216> colours = CubeColours();
    Require(palette->InitializeCustom(colours.data(), static_cast<UINT>(colours.size())),
            "create a palette");
  } else {
    const WICBitmapPaletteType type = mode.layout == PixelLayout::kGrey8
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
  if (mode.isPacked) {
    prepared.resize(rows.size() / 2 * 3);
    ExpandColour12(rows, prepared);
    return WritePixels(prepared, lineBytes / 2 * 3, lines);
  }
  if (swapsSamples) {
    prepared.resize(rows.size());
    SwapSampleBytes(rows, prepared);
    return WritePixels(prepared, lineBytes, lines);
  }
  WritePixels(rows, lineBytes, lines);
}

void PictureWriter::WritePixels(std::span<const std::uint8_t> rows, std::uint32_t lineBytes,
                                std::uint32_t lines) {
  // The component takes a pointer to non-constant bytes and only reads them.
  Require(frame->WritePixels(lines, lineBytes, static_cast<UINT>(rows.size()),
                             const_cast<BYTE*>(rows.data())),
          "write");
}

std::uint64_t PictureWriter::Commit() {
  Require(frame->Commit(), "finish the picture");
  Require(encoder->Commit(), "finish the file");
  frame.Reset();
  encoder.Reset();
  stream.Reset();
  if (format.container == Container::kBmp) growing.CorrectBitmapSize();
  const std::uint64_t bytes = growing.Bytes();
  Require(HRESULT_FROM_WIN32(growing.TakePlace()), "put the file in its place");
  return bytes;
}

void PictureWriter::Require(HRESULT result, const char* step) const {
  RequireSuccess(result, kOutputFile, step, name);
}

}  // namespace pmscan
