// The device's bytes while the host opens a scanner, asks for its state and closes it.

#include "fuzz/fuzz_host.h"
#include "interface/exports.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pmddb832::fuzz;
  FuzzHost host({data, size});
  host.Open();
  PMGetScanError();
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  for (std::uint32_t option = 0; option < 4; ++option) {
    host.device.NextCall();
    PMGetOptionStatus(option);
    PMGetScanPaperSize(option, &width, &height);
  }
  PMEnableOption(2);
  PMCloseScanner();
  return 0;
}
