#include "bench/page.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "imaging/line_conversion.h"
#include "imaging/row_kernels.h"

namespace pmddb832::bench {
namespace {

constexpr std::size_t kBufferBytes = 0xFF00;

// A block of the extended set has an even number of lines and a status byte behind them.
std::size_t LinesPerBlock(Family family, std::size_t rawBytes) {
  const std::size_t lines = (kBufferBytes - 10) / rawBytes;
  return family == Family::kExtended ? std::min<std::size_t>(lines, 254) & ~std::size_t{1}
                                     : std::min<std::size_t>(lines, 255);
}

std::vector<std::uint8_t> scannerMemory;
std::vector<std::uint8_t> hostMemory;

// What pixels of so many bits take, in whole bytes.
constexpr std::size_t BytesOf(std::size_t pixels, std::size_t bits) {
  return (pixels * bits + 7) / 8;
}

template <std::size_t bits>
void CopyPixels(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  std::memcpy(to, from, BytesOf(pixels, bits));
}

void InvertPixels(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  FastestRowKernels().invert(from, to, BytesOf(pixels, 1));
}

void Preview(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  FastestRowKernels().previewGrey(from, to, pixels);
}

void Unpack(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  FastestRowKernels().unpack12(from, to, pixels);
}

void SwapBytes(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  FastestRowKernels().swapBytes(from, to, pixels);
}

void SwapSamples(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  FastestRowKernels().swapSamples(from, to, pixels);
}

void Palette(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  const std::size_t planeBytes = pixels / 2;
  FastestRowKernels().paletteIndices({from, from + planeBytes, from + 2 * planeBytes}, to, pixels);
}

constexpr Scan kAllScans[]{
    {Family::kExtended, "grey", 2, 2, 8, 8, CopyPixels<8>},
    {Family::kExtended, "true colour", 5, 5, 24, 24, CopyPixels<24>},
    {Family::kExtended, "deep grey", 8, 8, 16, 16, CopyPixels<16>},
    {Family::kExtended, "line art", 0, 0, 1, 1, CopyPixels<1>},
    {Family::kExtended, "line art, inverted", 0, 0, 1, 1, InvertPixels, 1},
    {Family::kExtended, "grey, preview", 2, 2, 8, 8, Preview, 0, 1},
    {Family::kExtended, "12-bit colour", 6, 6, 12, 16, Unpack},
    {Family::kExtended, "deep colour, swapped", 7, 7, 48, 48, SwapSamples, 0, 0, 5400},
    {Family::kStandard, "grey", 2, 2, 8, 8, CopyPixels<8>},
    {Family::kStandard, "true colour, swapped", 5, 5, 24, 24, SwapBytes},
    {Family::kStandard, "palette", 4, 4, 12, 8, Palette},
    {Family::kStandard, "deep colour, swapped", 7, 7, 48, 48, SwapSamples},
};

}  // namespace

const std::span<const Scan> kScans{kAllScans};

std::string Page::Name() const {
  const std::string family = scan->family == Family::kExtended ? "extended" : "standard";
  std::string name = family + ", " + scan->type + ", " + std::to_string(resolution) + " dpi";
  if (bufferBytes == 0) return name;
  return name + ", " + std::to_string(bufferBytes >> 10) + " KB buffer";
}

std::uint32_t Page::Width() const {
  return std::min(resolution * 17 / 2, scan->widest);
}

std::uint32_t Page::Height() const {
  return resolution * 11;
}

std::size_t Page::Bytes() const {
  return std::size_t{Width()} * Height() * (scan->rawBits + scan->hostBits) / 16;
}

ScannerSettings Page::Settings(MemoryScanner& scanner) const {
  ScannerSettings settings{};
  settings.deviceInterface = &scanner;
  settings.useDeviceInterface = 1;
  settings.pixelType = scan->pixelType;
  settings.resolution = static_cast<std::uint16_t>(resolution);
  settings.zoom = 100;
  settings.gamma = 100;
  settings.thresholdT = kThresholdUnset;
  settings.areaWidthPx = Width();
  settings.areaHeightPx = Height();
  settings.invertMono = scan->invert;
  settings.previewMode = scan->preview;
  return settings;
}

std::span<const std::uint8_t> ScannerMemory() {
  return scannerMemory;
}

std::span<std::uint8_t> HostMemory() {
  return hostMemory;
}

void MakePagesResident() {
  constexpr std::size_t kLongestPage = std::size_t{10240} * 13200 * 6;
  constexpr std::size_t kBlockStatusBytes = 13200;
  scannerMemory.resize(kLongestPage + kBlockStatusBytes);
  for (std::size_t i = 0; i < scannerMemory.size(); ++i) {
    scannerMemory[i] = static_cast<std::uint8_t>(i * 2654435761u >> 13 & 0x7F);
  }
  hostMemory.assign(kLongestPage, 1);
}

void CopyOnce(const Page& page) {
  const std::size_t bytes = page.Bytes();
  const std::size_t step = page.bufferBytes == 0 ? bytes : page.bufferBytes;
  for (std::size_t done = 0; done < bytes; done += step) {
    std::memcpy(hostMemory.data(), scannerMemory.data() + done, std::min(step, bytes - done));
    benchmark::ClobberMemory();
  }
}

void CopyInTwoSteps(const Page& page) {
  static std::array<std::uint8_t, kBufferBytes> block;
  const std::size_t height = page.Height();
  const std::size_t rawBytes = BytesOf(page.Width(), page.scan->rawBits);
  const std::size_t rowBytes = (BytesOf(page.Width(), page.scan->hostBits) + 3) & ~std::size_t{3};
  const std::size_t linesPerBlock = LinesPerBlock(page.scan->family, rawBytes);
  const std::size_t linesPerBand = page.bufferBytes == 0 ? height : page.bufferBytes / rowBytes;
  const std::size_t status = page.scan->family == Family::kExtended ? 1 : 0;
  const bool topDown = IsTopDown(page.scan->outputFormat);
  const std::uint8_t* source = scannerMemory.data();
  std::size_t lineInBand = 0;
  for (std::size_t line = 0; line < height; line += linesPerBlock) {
    const std::size_t lines = std::min(linesPerBlock, height - line);
    std::memcpy(block.data(), source, lines * rawBytes + status);
    source += lines * rawBytes + status;
    for (std::size_t i = 0; i < lines; ++i) {
      const std::size_t row = topDown ? lineInBand : linesPerBand - 1 - lineInBand;
      page.scan->row(block.data() + i * rawBytes, hostMemory.data() + row * rowBytes, page.Width());
      if (++lineInBand == linesPerBand) lineInBand = 0;
    }
  }
}

}  // namespace pmddb832::bench
