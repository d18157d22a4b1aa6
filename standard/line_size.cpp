#include "standard/line_size.h"

namespace pmddb832 {
namespace {

constexpr std::uint32_t kUnalignedFormat = 1;
constexpr std::uint64_t kLargestTransfer = 64270;
constexpr std::uint64_t kColourOverhead = 60;
constexpr std::uint64_t kGreyOverhead = 30;
constexpr std::uint32_t kLargestColour12Line = 32768;

std::uint32_t StorageUnits(std::uint32_t width, const PixelFormat& format) {
  return (width + format.pixelsPerUnit - 1) / format.pixelsPerUnit;
}

}  // namespace

std::uint32_t HostLineBytes(std::uint32_t width, const PixelFormat& format,
                            std::uint32_t outputFormat) {
  const std::uint32_t bytes = StorageUnits(width, format) * format.bytesPerUnit;
  const bool unaligned = outputFormat == kUnalignedFormat && format.pixelsPerUnit == 2;
  return unaligned ? bytes : (bytes + 3) & ~3u;
}

std::uint32_t RawLineRoom(std::uint32_t width, const PixelFormat& format) {
  return (StorageUnits(width, format) + 7) / 8 * format.bytesPerUnit * 8;
}

std::uint32_t RawLineRooms(std::uint32_t pixelType, const PixelFormat& format) {
  const bool reducedSamples = IsDeep(pixelType) && format.bitsPerSample == 8;
  return reducedSamples || pixelType == kPalette ? 2 : 1;
}

bool FitsOneTransfer(std::uint32_t lineBytes, std::uint32_t pixelType, const PixelFormat& format) {
  if (pixelType == kColour12) return lineBytes <= kLargestColour12Line;
  return lineBytes + (format.colorMode != 0 ? kColourOverhead : kGreyOverhead) <= kLargestTransfer;
}

}  // namespace pmddb832
