#include "interface/exports.h"

#include "interface/lifecycle.h"
#include "platform/trace.h"

namespace {

using pmddb832::currentCommandSet;
using pmddb832::currentSettings;
using pmddb832::TraceScope;

constexpr std::uint32_t kProcessDetach = 0;
constexpr std::uint32_t kProcessAttach = 1;

// Every call needs a command set, and a record that the set can read.
bool HasScanner() {
  return currentCommandSet != nullptr && currentSettings != nullptr;
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
  if (pmddb832::PMInit(0, 0) == nullptr) return 0;
  return currentCommandSet->Open();
}

void PMSetScannerHardware(pmddb832::ScannerSettings* settings) {
  const TraceScope trace{"Pmddb832::PMSetScannerHardware"};
  currentSettings = settings;
}

void PMInitAcquire(std::uint32_t outputFormat, pmddb832::ProgressCallback progress,
                   pmddb832::AcquisitionSetup* setup) {
  const TraceScope trace{"Pmddb832::PMInitAcquire"};
  if (HasScanner()) currentCommandSet->InitAcquire(outputFormat, progress, setup);
}

void PMAcquireImage(std::uint8_t* buffer, std::uint32_t bufferBytes,
                    pmddb832::AcquisitionBand* band) {
  const TraceScope trace{"Pmddb832::PMAcquireImage"};
  if (HasScanner()) currentCommandSet->AcquireImage(buffer, bufferBytes, band);
}

void PMAbortScan() {
  const TraceScope trace{"Pmddb832::PMAbortScan"};
  if (HasScanner()) currentCommandSet->AbortScan();
}

void PMCloseScanner() {
  const TraceScope trace{"Pmddb832::PMCloseScanner"};
  if (HasScanner()) currentCommandSet->Close();
}

std::uint32_t PMGetOptionStatus(std::uint32_t option) {
  const TraceScope trace{"Pmddb832::PMGetOptionStatus"};
  return HasScanner() ? currentCommandSet->GetOptionStatus(nullptr, option) : 0;
}

void PMEject(void* /*ignored*/) {
  const TraceScope trace{"Pmddb832::PMEject"};
  if (HasScanner()) currentCommandSet->EjectPage();
}

void PMFeed(void* /*ignored*/) {
  const TraceScope trace{"Pmddb832::PMFeed"};
  if (HasScanner()) currentCommandSet->FeedPaper();
}

std::uint32_t PMReset() {
  const TraceScope trace{"Pmddb832::PMReset"};
  return HasScanner() ? currentCommandSet->ResetScanner() : 0;
}

std::uint8_t PMSetFocus(std::uint32_t mode, std::uint8_t position) {
  const TraceScope trace{"Pmddb832::PMSetFocus"};
  return HasScanner() ? currentCommandSet->SetFocusPos(mode, position) : std::uint8_t{0};
}

std::uint32_t PMEnableOption(std::uint32_t value) {
  const TraceScope trace{"Pmddb832::PMEnnableOption"};  // the host's log knows it by this spelling
  return HasScanner() ? currentCommandSet->EnableOption(value) : 0;
}

std::uint32_t PMGetScanPaperSize(std::uint32_t option, std::uint32_t* widthPixels,
                                 std::uint32_t* heightPixels) {
  const TraceScope trace{"Pmddb832::PMGetScanPaperSize"};
  return HasScanner() ? currentCommandSet->GetScanPaperSize(option, widthPixels, heightPixels) : 0;
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
