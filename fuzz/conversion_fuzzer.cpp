// Each conversion with any counts, pads and flags; line and row in allocations of exactly their
// sizes.

#include <algorithm>
#include <memory>

#include "fuzz/fuzz_host.h"
#include "imaging/pixel_conversion.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pmddb832;
  fuzz::Input input({data, size});
  const std::uint8_t routine = input.Byte() % 8;
  const std::uint8_t flags = input.Byte();
  const bool flag = (flags & 1) != 0;
  ScannerSettings settings{};
  settings.whitePadding = flags >> 2 & 1;
  settings.mainStatusBit5 = flags >> 3 & 1;
  currentSettings = &settings;
  const auto pad = static_cast<std::int16_t>(input.Word());
  const auto pixels = static_cast<std::int16_t>(input.Word());
  const std::size_t rowBytes = input.Word() % 4096;
  const auto row = std::make_unique<std::uint8_t[]>(rowBytes);
  const std::size_t lineBytes = input.Rest().size();
  const auto line = std::make_unique<std::uint8_t[]>(lineBytes);
  std::copy(input.Rest().begin(), input.Rest().end(), line.get());
  const std::span<const std::uint8_t> bytes{line.get(), lineBytes};
  const ScanLine from{pixels, bytes, bytes.subspan(lineBytes / 3), bytes.subspan(lineBytes / 2)};
  const HostRow to{row.get(), rowBytes};
  switch (routine) {
    case 0:
      Scanutil::Pix2Mono(from, to, pad, flag);
      break;
    case 1:
      Scanutil::Pix256MonoFinal(from, to, pad, flag);
      break;
    case 2:
      Scanutil::Pix256MonoPreview(from, to, pad);
      break;
    case 3:
      Scanutil::Pix256Color(from, to, flag, pad);
      break;
    case 4:
      Scanutil::PixTrueColor(from, to, flag, pad);
      break;
    case 5:
      Scanutil::Pix4096Color(from, to, pad);
      break;
    case 6:
      Scanutil::PixSuperColor(from, to, flag, pad, (flags & 2) != 0);
      break;
    default:
      Scanutil::Pix4096Mono(from, to, pad, flag);
      break;
  }
  currentSettings = nullptr;
  return 0;
}
