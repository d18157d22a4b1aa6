// The exports in any order, also out of the device's transfers, the progress routine and the
// painting of the progress window, with the host's choices between them, then the device's bytes.

#include <array>

#include "fuzz/fuzz_host.h"
#include "interface/exports.h"
#include "platform/native.h"
#include "tests/safety/meant_leak.h"

namespace {

using pmddb832::fuzz::FuzzHost;
using pmddb832::fuzz::Input;

FuzzHost* currentHost = nullptr;
Input* currentCalls = nullptr;

void MakeCall(FuzzHost& host, Input& calls);

// Makes the next call, if one is left: each takes bytes of the input, so that calls within calls
// come to an end.
void CallFromWithin() {
  if (!currentCalls->Rest().empty()) MakeCall(*currentHost, *currentCalls);
}

void CallOutOfProgress(std::uint32_t /*percent*/) {
  CallFromWithin();
}

void CallOutOfPainting(void* /*window*/) {
  CallFromWithin();
}

void AskPaperSize(std::uint8_t option) {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  PMGetScanPaperSize(option, &width, &height);
}

// A further open leaves the former command set behind; closed, it has given its buffers back.
void Open(FuzzHost& host) {
  const pmddb832::tests::MeantLeak formerCommandSet;
  PMCloseScanner();
  host.Open();
}

using CallWith = void (*)(FuzzHost& host, Input& calls, std::uint8_t argument);

constexpr std::array<CallWith, 18> kCalls{
    [](FuzzHost&, Input&, std::uint8_t) { PMCloseScanner(); },
    [](FuzzHost&, Input&, std::uint8_t) { PMAbortScan(); },
    [](FuzzHost& host, Input&, std::uint8_t format) { host.SetUp(format); },
    [](FuzzHost& host, Input&, std::uint8_t rows) { host.Acquire(rows, rows & 3u); },
    [](FuzzHost&, Input&, std::uint8_t position) { PMSetFocus(position & 1u, position); },
    [](FuzzHost&, Input&, std::uint8_t option) { PMGetOptionStatus(option); },
    [](FuzzHost&, Input&, std::uint8_t value) { PMEnableOption(value); },
    [](FuzzHost&, Input&, std::uint8_t option) { AskPaperSize(option); },
    [](FuzzHost&, Input&, std::uint8_t) { PMReset(); },
    [](FuzzHost&, Input&, std::uint8_t) { PMFeed(nullptr); },
    [](FuzzHost&, Input&, std::uint8_t) { PMEject(nullptr); },
    [](FuzzHost&, Input&, std::uint8_t) { PMGetScanError(); },
    [](FuzzHost& host, Input& calls, std::uint8_t) { ApplyScanChoices(calls, host.settings); },
    [](FuzzHost& host, Input&, std::uint8_t format) { host.SetUp(format, CallOutOfProgress); },
    [](FuzzHost& host, Input&, std::uint8_t which) {
      PMSetScannerHardware(which % 8 == 0 ? nullptr : &host.settings);
    },
    [](FuzzHost& host, Input&, std::uint8_t) { Open(host); },
    [](FuzzHost& host, Input&, std::uint8_t transfers) {
      host.device.CallWithin(transfers, CallFromWithin);
    },
    [](FuzzHost& host, Input&, std::uint8_t paints) {
      host.settings.progressWindow = paints % 2 != 0 ? &host : nullptr;
    }};

void MakeCall(FuzzHost& host, Input& calls) {
  const std::uint8_t argument = calls.Byte();
  host.device.NextCall();
  kCalls[calls.Byte() % kCalls.size()](host, calls, argument);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input({data, size});
  const std::uint8_t count = input.Byte() % 64;
  Input calls(input.Take(count * std::size_t{4}));
  FuzzHost host(input.Rest());
  currentHost = &host;
  currentCalls = &calls;
  pmddb832::platform::Native().onRepaint = CallOutOfPainting;
  if (calls.Byte() % 8 != 0) Open(host);
  for (std::uint8_t i = 0; i < count; ++i) MakeCall(host, calls);
  return 0;
}
