#include "pmscan/scan/module_calls.h"

#include <algorithm>
#include <array>

#include "pmscan/captures/call_values.h"

namespace pmscan {
namespace {

using Values = std::vector<capture::Value>;

// Stands for the host's progress routine where the capture's host had one.
void IgnoreProgress(std::uint32_t) {}

CallOutcome Result(std::uint32_t result) {
  return {{{"result", result}}, std::nullopt};
}

CallOutcome OpenScanner(CallSurroundings& host, const Values&) {
  return Result(host.module.openScanner(&host.settings));
}

CallOutcome SetScannerHardware(CallSurroundings& host, const Values&) {
  host.module.setScannerHardware(&host.settings);
  return {};
}

CallOutcome InitAcquire(CallSurroundings& host, const Values& arguments) {
  pmddb832::AcquisitionSetup setup{};
  setup.status = ValueOf(arguments, "status");
  setup.lineBytes = ValueOf(arguments, "lineBytes");
  setup.widthPixels = ValueOf(arguments, "widthPixels");
  setup.heightLines = ValueOf(arguments, "heightLines");
  host.module.initAcquire(ValueOf(arguments, "outputFormat"),
                          ValueOf(arguments, "progress") != 0 ? &IgnoreProgress : nullptr, &setup);
  return {ValuesOf(setup), std::nullopt};
}

CallOutcome AcquireImage(CallSurroundings& host, const Values& arguments) {
  const std::uint32_t bytes = std::min(ValueOf(arguments, "bufferBytes"), kMostBufferBytes);
  pmddb832::AcquisitionBand band{};
  band.status = ValueOf(arguments, "status");
  band.done = ValueOf(arguments, "done");
  band.lines = ValueOf(arguments, "lines");
  band.bytes = ValueOf(arguments, "bytes");
  host.rows.assign(bytes, 0);
  host.module.acquireImage(host.rows.data(), bytes, &band);
  return {ValuesOf(band), LinesChecksum(host.rows.data(), bytes, band)};
}

CallOutcome AbortScan(CallSurroundings& host, const Values&) {
  host.module.abortScan();
  return {};
}

CallOutcome CloseScanner(CallSurroundings& host, const Values&) {
  host.module.closeScanner();
  return {};
}

CallOutcome GetOptionStatus(CallSurroundings& host, const Values& arguments) {
  return Result(host.module.getOptionStatus(ValueOf(arguments, "option")));
}

CallOutcome Eject(CallSurroundings& host, const Values&) {
  host.module.eject(nullptr);
  return {};
}

CallOutcome Feed(CallSurroundings& host, const Values&) {
  host.module.feed(nullptr);
  return {};
}

CallOutcome Reset(CallSurroundings& host, const Values&) {
  return Result(host.module.reset());
}

CallOutcome SetFocus(CallSurroundings& host, const Values& arguments) {
  const auto position = static_cast<std::uint8_t>(ValueOf(arguments, "position"));
  return Result(host.module.setFocus(ValueOf(arguments, "mode"), position));
}

CallOutcome EnableOption(CallSurroundings& host, const Values& arguments) {
  return Result(host.module.enableOption(ValueOf(arguments, "value")));
}

CallOutcome GetScanPaperSize(CallSurroundings& host, const Values& arguments) {
  std::uint32_t width = ValueOf(arguments, "widthPixels");
  std::uint32_t height = ValueOf(arguments, "heightPixels");
  const std::uint32_t result =
      host.module.getScanPaperSize(ValueOf(arguments, "option"), &width, &height);
  return {{{"result", result}, {"widthPixels", width}, {"heightPixels", height}}, std::nullopt};
}

CallOutcome GetScanError(CallSurroundings& host, const Values&) {
  return Result(host.module.getScanError());
}

// clang-format off
const std::array kModuleCalls{
    ModuleCall{"PMOpenScanner", {}, &OpenScanner},
    ModuleCall{"PMSetScannerHardware", {}, &SetScannerHardware},
    ModuleCall{"PMInitAcquire",
               {"outputFormat", "progress", "status", "lineBytes", "widthPixels", "heightLines"},
               &InitAcquire},
    ModuleCall{"PMAcquireImage", {"bufferBytes", "status", "done", "lines", "bytes"}, &AcquireImage},
    ModuleCall{"PMAbortScan", {}, &AbortScan},
    ModuleCall{"PMCloseScanner", {}, &CloseScanner},
    ModuleCall{"PMGetOptionStatus", {"option"}, &GetOptionStatus},
    ModuleCall{"PMEject", {}, &Eject},
    ModuleCall{"PMFeed", {}, &Feed},
    ModuleCall{"PMReset", {}, &Reset},
    ModuleCall{"PMSetFocus", {"mode", "position"}, &SetFocus},
    ModuleCall{"PMEnableOption", {"value"}, &EnableOption},
    ModuleCall{"PMGetScanPaperSize", {"option", "widthPixels", "heightPixels"}, &GetScanPaperSize},
    ModuleCall{"PMGetScanError", {}, &GetScanError},
};
// clang-format on

}  // namespace

const ModuleCall* FindModuleCall(std::string_view name) {
  for (const ModuleCall& call : kModuleCalls) {
    if (call.name == name) return &call;
  }
  return nullptr;
}

}  // namespace pmscan
