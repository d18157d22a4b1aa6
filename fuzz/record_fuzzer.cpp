// Any content of the host's record, then the device's bytes: an open and two scans.

#include <cstring>

#include "fuzz/fuzz_host.h"

namespace {

// The record as the input has it, but for the host's objects.
void ApplyRecord(std::span<const std::uint8_t> bytes, pmddb832::ScannerSettings& settings) {
  auto* const device = settings.deviceInterface;
  std::memcpy(&settings, bytes.data(), bytes.size());
  settings.deviceInterface = device;
  settings.useDeviceInterface = 1;
  settings.progressWindow = nullptr;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pmddb832::fuzz;
  Input input({data, size});
  const std::uint8_t outputFormat = input.Byte();
  const std::uint8_t rows = input.Byte();
  const auto record = input.Take(sizeof(pmddb832::ScannerSettings));
  FuzzHost host(input.Rest());
  ApplyRecord(record, host.settings);
  host.Open();
  host.Scan(outputFormat, rows);
  ApplyRecord(record, host.settings);  // identification has written to it
  host.Scan(outputFormat, rows);
  return 0;
}
