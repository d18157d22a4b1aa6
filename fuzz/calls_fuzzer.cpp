// The exports in any order, also out of the progress routine, with the host's choices between them,
// then the device's bytes.

#include "fuzz/fuzz_host.h"
#include "interface/exports.h"

namespace {

using pmddb832::fuzz::FuzzHost;
using pmddb832::fuzz::Input;

FuzzHost* currentHost = nullptr;
Input* currentCalls = nullptr;

void Call(FuzzHost& host, Input& calls);

// Makes the next call, if one is left: each takes bytes of the input, so that calls within calls
// come to an end.
void CallBack(std::uint32_t /*percent*/) {
  if (!currentCalls->Rest().empty()) Call(*currentHost, *currentCalls);
}

void Call(FuzzHost& host, Input& calls) {
  const std::uint8_t argument = calls.Byte();
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  host.device.NextCall();
  switch (calls.Byte() % 15) {
    case 0:
      return PMCloseScanner();
    case 1:
      return PMAbortScan();
    case 2:
      return host.SetUp(argument);
    case 3:
      return static_cast<void>(host.Acquire(argument, argument & 3u));
    case 4:
      return static_cast<void>(PMSetFocus(argument & 1u, argument));
    case 5:
      return static_cast<void>(PMGetOptionStatus(argument));
    case 6:
      return static_cast<void>(PMEnableOption(argument));
    case 7:
      return static_cast<void>(PMGetScanPaperSize(argument, &width, &height));
    case 8:
      return static_cast<void>(PMReset());
    case 9:
      return PMFeed(nullptr);
    case 10:
      return PMEject(nullptr);
    case 11:
      return static_cast<void>(PMGetScanError());
    case 12:
      return ApplyScanChoices(calls, host.settings);
    case 13:
      return host.SetUp(argument, &CallBack);
    default:
      return PMSetScannerHardware(argument % 8 == 0 ? nullptr : &host.settings);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input({data, size});
  const std::uint8_t count = input.Byte() % 64;
  Input calls(input.Take(count * std::size_t{4}));
  FuzzHost host(input.Rest());
  currentHost = &host;
  currentCalls = &calls;
  if (calls.Byte() % 8 != 0) host.Open();
  for (std::uint8_t i = 0; i < count; ++i) Call(host, calls);
  return 0;
}
