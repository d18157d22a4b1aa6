#include "interface/exports.h"

#include <utility>

#include "interface/call_scope.h"
#include "interface/lifecycle.h"
#include "platform/trace.h"

namespace {

using pmddb832::Call;
using pmddb832::currentChannel;
using pmddb832::currentCommandSet;
using pmddb832::currentSettings;
using pmddb832::GeneralCmd;
using pmddb832::TraceScope;

constexpr std::uint32_t kProcessDetach = 0;
constexpr std::uint32_t kProcessAttach = 1;

// Runs a call of the host on the command set and the record that are current now; 0 while one of
// them is missing.
template <class Operation>
auto Forward(Operation operation) {
  using Result = decltype(operation(*currentCommandSet, std::declval<Call&>()));
  if (currentCommandSet == nullptr || currentSettings == nullptr) return Result();
  pmddb832::CallScope scope(*currentSettings, currentChannel);
  return operation(*currentCommandSet, scope.call);
}

void ReleaseLog() {
  pmddb832::platform::TraceLog* const log = pmddb832::platform::currentLog;
  if (log == nullptr) return;
  pmddb832::platform::WriteTrace(*log, "driver Unloaded successfully", "",
                                 pmddb832::platform::kDetailLoadAndUnload);
  pmddb832::platform::ReleaseTraceLog(*log);
  pmddb832::platform::currentLog = nullptr;
}

}  // namespace

std::uint32_t PMOpenScanner(pmddb832::ScannerSettings* settings) {
  const TraceScope trace{"Pmddb832::PMOpenScanner"};
  if (settings == nullptr) return 0;
  currentSettings = settings;
  if (pmddb832::PMInit(*settings, 0, 0) == nullptr) return 0;
  pmddb832::CallScope scope(*settings, currentChannel);
  return currentCommandSet->Open(scope.call);
}

void PMSetScannerHardware(pmddb832::ScannerSettings* settings) {
  const TraceScope trace{"Pmddb832::PMSetScannerHardware"};
  currentSettings = settings;
}

void PMInitAcquire(std::uint32_t outputFormat, pmddb832::ProgressCallback progress,
                   pmddb832::AcquisitionSetup* setup) {
  const TraceScope trace{"Pmddb832::PMInitAcquire"};
  Forward([=](GeneralCmd& scanner, Call& call) {
    scanner.InitAcquire(call, outputFormat, progress, setup);
  });
}

void PMAcquireImage(std::uint8_t* buffer, std::uint32_t bufferBytes,
                    pmddb832::AcquisitionBand* band) {
  const TraceScope trace{"Pmddb832::PMAcquireImage"};
  Forward([=](GeneralCmd& scanner, Call& call) {
    scanner.AcquireImage(call, buffer, bufferBytes, band);
  });
}

void PMAbortScan() {
  const TraceScope trace{"Pmddb832::PMAbortScan"};
  Forward([](GeneralCmd& scanner, Call& call) { return scanner.AbortScan(call); });
}

void PMCloseScanner() {
  const TraceScope trace{"Pmddb832::PMCloseScanner"};
  Forward([](GeneralCmd& scanner, Call& call) { scanner.Close(call); });
}

std::uint32_t PMGetOptionStatus(std::uint32_t option) {
  const TraceScope trace{"Pmddb832::PMGetOptionStatus"};
  return Forward([=](GeneralCmd& scanner, Call& call) {
    return scanner.GetOptionStatus(call, nullptr, option);
  });
}

void PMEject(void* /*ignored*/) {
  const TraceScope trace{"Pmddb832::PMEject"};
  Forward([](GeneralCmd& scanner, Call& call) { return scanner.EjectPage(call); });
}

void PMFeed(void* /*ignored*/) {
  const TraceScope trace{"Pmddb832::PMFeed"};
  Forward([](GeneralCmd& scanner, Call& call) { return scanner.FeedPaper(call); });
}

std::uint32_t PMReset() {
  const TraceScope trace{"Pmddb832::PMReset"};
  return Forward([](GeneralCmd& scanner, Call& call) { return scanner.ResetScanner(call); });
}

std::uint8_t PMSetFocus(std::uint32_t mode, std::uint8_t position) {
  const TraceScope trace{"Pmddb832::PMSetFocus"};
  return Forward(
      [=](GeneralCmd& scanner, Call& call) { return scanner.SetFocusPos(call, mode, position); });
}

std::uint32_t PMEnableOption(std::uint32_t value) {
  const TraceScope trace{"Pmddb832::PMEnnableOption"};  // the host's log knows it by this spelling
  return Forward(
      [=](GeneralCmd& scanner, Call& call) { return scanner.EnableOption(call, value); });
}

std::uint32_t PMGetScanPaperSize(std::uint32_t option, std::uint32_t* widthPixels,
                                 std::uint32_t* heightPixels) {
  const TraceScope trace{"Pmddb832::PMGetScanPaperSize"};
  return Forward([=](GeneralCmd& scanner, Call& call) {
    return scanner.GetScanPaperSize(call, option, widthPixels, heightPixels);
  });
}

std::uint32_t PMGetScanError() {
  const TraceScope trace{"Pmddb832::PMGetScanError"};
  if (currentCommandSet != nullptr) return currentCommandSet->GetLastError();
  const std::uint32_t error = pmddb832::initialisationError;
  pmddb832::initialisationError = 0;
  return error;
}

std::int32_t DllMain(void* instance, std::uint32_t reason, void* /*reserved*/) {
  if (instance == nullptr) return 0;
  if (reason == kProcessAttach) pmddb832::moduleInstance = instance;
  if (reason == kProcessDetach) {
    pmddb832::PMExit();
    ReleaseLog();
  }
  return 1;
}
