// Any bytes at all from the device while the host opens a scanner, asks for its state and closes
// it.

#include <cstring>

#include "fuzz/input.h"
#include "interface/exports.h"
#include "interface/lifecycle.h"
#include "transport/raw_device.h"

namespace {

constexpr std::uint32_t kProcessDetach = 0;

// Its answers are the input, in order; a read fails when there are none left.
class AnyBytesDevice final : public pmddb832::RawDevice {
 public:
  explicit AnyBytesDevice(std::span<const std::uint8_t> answers) : answers_(answers) {}

  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void* /*unused*/) override {
    const auto answer = answers_.Take(*byteCount);
    if (answer.size() < *byteCount) return -1;
    if (!answer.empty()) std::memcpy(buffer, answer.data(), answer.size());
    return 0;
  }
  std::int32_t RawWriteData(void*, std::uint32_t, void*) override { return 0; }

 private:
  pmddb832::fuzz::Input answers_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  AnyBytesDevice device({data, size});
  pmddb832::ScannerSettings settings{};
  settings.deviceInterface = &device;
  settings.useDeviceInterface = 1;
  PMOpenScanner(&settings);
  PMGetScanError();
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  for (std::uint32_t option = 0; option < 4; ++option) {
    PMGetOptionStatus(option);
    PMGetScanPaperSize(option, &width, &height);
  }
  PMEnableOption(2);
  PMCloseScanner();
  DllMain(&settings, kProcessDetach, nullptr);
  pmddb832::currentSettings = nullptr;
  pmddb832::extendedSupport = 0;
  return 0;
}
