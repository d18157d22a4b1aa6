// Any bytes as the file of a picture for the bed.

#include <cstdlib>

#include "pmscan/native/picture_decoders.h"

namespace {

constexpr std::uint64_t kMostPixels = 1 << 18;

void Judge(const simulator::Picture& picture) {
  const std::uint64_t pixels = std::uint64_t{picture.width} * picture.height;
  const bool isWhole = picture.samples.size() == 3 * pixels;
  if (!isWhole || pixels == 0 || pixels > kMostPixels || picture.dotsPerInch == 0) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    Judge(pmscan::DecodePicture({{data, size}, kMostPixels}));
  } catch (const pmscan::PictureError&) {
    return 0;
  }
  return 0;
}
