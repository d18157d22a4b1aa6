// Each conversion with any counts, pads and flags; line and row in allocations of exactly their
// sizes.

#include <algorithm>
#include <memory>

#include "fuzz/input.h"
#include "imaging/pixel_conversion.h"

namespace pmddb832 {
namespace {

// What a conversion is told beside its line, its row and its pad.
struct Flags {
  bool first;
  bool second;
  bool white;
};

void Convert(std::uint8_t routine, const ScanLine& from, HostRow to, std::int16_t pad,
             const Flags& flags) {
  switch (routine) {
    case 0:
      return Scanutil::Pix2Mono(from, to, pad, flags.first, flags.white);
    case 1:
      return Scanutil::Pix256MonoFinal(from, to, pad, flags.first, flags.white);
    case 2:
      return Scanutil::Pix256MonoPreview(from, to, pad, flags.white);
    case 3:
      return Scanutil::Pix256Color(from, to, flags.first, pad, flags.white);
    case 4:
      return Scanutil::PixTrueColor(from, to, flags.first, pad, flags.white);
    case 5:
      return Scanutil::Pix4096Color(from, to, pad, flags.white);
    case 6:
      return Scanutil::PixSuperColor(from, to, flags.first, pad, flags.second, flags.white);
    default:
      return Scanutil::Pix4096Mono(from, to, pad, flags.first, flags.white);
  }
}

}  // namespace
}  // namespace pmddb832

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pmddb832;
  fuzz::Input input({data, size});
  const std::uint8_t routine = input.Byte() % 8;
  const std::uint8_t flags = input.Byte();
  const auto pad = static_cast<std::int16_t>(input.Word());
  const auto pixels = static_cast<std::int16_t>(input.Word());
  const std::size_t rowBytes = input.Word() % 4096;
  const auto row = std::make_unique<std::uint8_t[]>(rowBytes);
  const std::size_t lineBytes = input.Rest().size();
  const auto line = std::make_unique<std::uint8_t[]>(lineBytes);
  std::copy(input.Rest().begin(), input.Rest().end(), line.get());
  const std::span<const std::uint8_t> bytes{line.get(), lineBytes};
  const ScanLine from{pixels, bytes, bytes.subspan(lineBytes / 3), bytes.subspan(lineBytes / 2)};
  Convert(routine, from, {row.get(), rowBytes}, pad,
          {(flags & 1) != 0, (flags & 2) != 0, (flags & 4) != 0});
  return 0;
}
