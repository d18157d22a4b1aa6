#include "pmscan/captures/capture_calls.h"

#include "pmscan/captures/call_values.h"

namespace pmscan {
namespace {

using capture::Value;
using Values = std::vector<Value>;

// The module that is recorded, and who records it.
ModuleExports recorded;
capture::Recorder* recorder = nullptr;

// For exports with a number as their result.
template <class Function>
std::uint32_t CallForResult(const char* name, const Values& arguments, const Function& function) {
  recorder->BeginCall(name, arguments);
  const std::uint32_t result = function();
  recorder->EndCall({{"result", result}});
  return result;
}

template <class Function>
void CallForNothing(const char* name, const Function& function) {
  recorder->BeginCall(name, {});
  function();
  recorder->EndCall({});
}

std::uint32_t OpenScanner(pmddb832::ScannerSettings* settings) {
  return CallForResult("PMOpenScanner", {}, [&] { return recorded.openScanner(settings); });
}

void CloseScanner() {
  CallForNothing("PMCloseScanner", [] { recorded.closeScanner(); });
}

void InitAcquire(std::uint32_t outputFormat, pmddb832::ProgressCallback progress,
                 pmddb832::AcquisitionSetup* setup) {
  Values arguments{{"outputFormat", outputFormat}, {"progress", progress != nullptr ? 1u : 0u}};
  const Values handedOver = WithoutZeros(ValuesOf(*setup));
  arguments.insert(arguments.end(), handedOver.begin(), handedOver.end());
  recorder->BeginCall("PMInitAcquire", arguments);
  recorded.initAcquire(outputFormat, progress, setup);
  recorder->EndCall(ValuesOf(*setup));
}

void AcquireImage(std::uint8_t* buffer, std::uint32_t bufferBytes,
                  pmddb832::AcquisitionBand* band) {
  Values arguments{{"bufferBytes", bufferBytes}};
  const Values handedOver = WithoutZeros(ValuesOf(*band));
  arguments.insert(arguments.end(), handedOver.begin(), handedOver.end());
  recorder->BeginCall("PMAcquireImage", arguments);
  recorded.acquireImage(buffer, bufferBytes, band);
  recorder->EndCall(ValuesOf(*band), LinesChecksum(buffer, bufferBytes, *band));
}

void AbortScan() {
  CallForNothing("PMAbortScan", [] { recorded.abortScan(); });
}

std::uint32_t GetOptionStatus(std::uint32_t option) {
  return CallForResult("PMGetOptionStatus", {{"option", option}},
                       [&] { return recorded.getOptionStatus(option); });
}

std::uint32_t EnableOption(std::uint32_t value) {
  return CallForResult("PMEnableOption", {{"value", value}},
                       [&] { return recorded.enableOption(value); });
}

std::uint32_t GetScanPaperSize(std::uint32_t option, std::uint32_t* widthPixels,
                               std::uint32_t* heightPixels) {
  Values arguments{{"option", option}};
  const Values handedOver =
      WithoutZeros({{"widthPixels", *widthPixels}, {"heightPixels", *heightPixels}});
  arguments.insert(arguments.end(), handedOver.begin(), handedOver.end());
  recorder->BeginCall("PMGetScanPaperSize", arguments);
  const std::uint32_t result = recorded.getScanPaperSize(option, widthPixels, heightPixels);
  recorder->EndCall(
      {{"result", result}, {"widthPixels", *widthPixels}, {"heightPixels", *heightPixels}});
  return result;
}

std::uint32_t GetScanError() {
  return CallForResult("PMGetScanError", {}, [] { return recorded.getScanError(); });
}

void SetScannerHardware(pmddb832::ScannerSettings* settings) {
  CallForNothing("PMSetScannerHardware", [&] { recorded.setScannerHardware(settings); });
}

void Eject(void* ignored) {
  CallForNothing("PMEject", [&] { recorded.eject(ignored); });
}

void Feed(void* ignored) {
  CallForNothing("PMFeed", [&] { recorded.feed(ignored); });
}

std::uint32_t Reset() {
  return CallForResult("PMReset", {}, [] { return recorded.reset(); });
}

std::uint8_t SetFocus(std::uint32_t mode, std::uint8_t position) {
  return static_cast<std::uint8_t>(
      CallForResult("PMSetFocus", {{"mode", mode}, {"position", position}},
                    [&]() -> std::uint32_t { return recorded.setFocus(mode, position); }));
}

}  // namespace

CaptureCalls::CaptureCalls(const ModuleExports& recordedModule, capture::Recorder& callRecorder) {
  recorded = recordedModule;
  recorder = &callRecorder;
}

CaptureCalls::~CaptureCalls() {
  recorded = {};
  recorder = nullptr;
}

ModuleExports CaptureCalls::Exports() {
  ModuleExports exports;
  exports.openScanner = &OpenScanner;
  exports.closeScanner = &CloseScanner;
  exports.initAcquire = &InitAcquire;
  exports.acquireImage = &AcquireImage;
  exports.abortScan = &AbortScan;
  exports.getOptionStatus = &GetOptionStatus;
  exports.enableOption = &EnableOption;
  exports.getScanPaperSize = &GetScanPaperSize;
  exports.getScanError = &GetScanError;
  exports.setScannerHardware = &SetScannerHardware;
  exports.eject = &Eject;
  exports.feed = &Feed;
  exports.reset = &Reset;
  exports.setFocus = &SetFocus;
  return exports;
}

}  // namespace pmscan
