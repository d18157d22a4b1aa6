#include "tests/models/comparison/module_run.h"

#include <algorithm>

#include "interface/exports.h"
#include "interface/lifecycle.h"
#include "platform/native.h"
#include "tests/safety/meant_leak.h"

namespace pmddb832::models {
namespace {

Replay* currentReplay = nullptr;

void TellProgress(std::uint32_t percent) {
  currentReplay->Progress(percent);
}

// As a library that is loaded afresh.
void ForgetGlobals() {
  platform::Native() = {};
  currentSettings = nullptr;
  extendedSupport = 0;
  initialisationError = 0;
}

void Acquire(const HostCall& call, Outcome& outcome) {
  // Exactly sized, so that a byte too many is noticed.
  const auto image = std::make_unique<std::uint8_t[]>(call.bufferBytes);
  std::copy(outcome.image.begin(), outcome.image.end(), image.get());
  AcquisitionBand band;
  std::memcpy(&band, outcome.band.data(), sizeof band);
  PMAcquireImage(image.get(), call.bufferBytes, &band);
  std::memcpy(outcome.band.data(), &band, sizeof band);
  std::copy_n(image.get(), call.bufferBytes, outcome.image.begin());
}

void SetUp(const HostCall& call, Outcome& outcome) {
  AcquisitionSetup setup;
  std::memcpy(&setup, outcome.setup.data(), sizeof setup);
  PMInitAcquire(call.argument, call.tellsProgress ? TellProgress : nullptr, &setup);
  std::memcpy(outcome.setup.data(), &setup, sizeof setup);
}

}  // namespace

struct ModuleRun::HostRecords {
  std::array<ScannerSettings, 2> settings;
};

ModuleRun::ModuleRun() : records_(std::make_unique<HostRecords>()) {
  ForgetGlobals();
  currentReplay = &replay;
  platform::Native().onRepaint = [](void* /*window*/) { currentReplay->Repaint(); };
}

ModuleRun::~ModuleRun() {
  const std::vector<Event> nothing;
  replay.Begin(nothing);
  DllMain(this, 0, nullptr);
  ForgetGlobals();
  currentReplay = nullptr;
}

void* ModuleRun::DeviceOfRecords() {
  return static_cast<StillImageDevice*>(&replay);
}

void ModuleRun::SetRecords(const std::array<Record, 2>& records) {
  for (std::size_t i = 0; i < 2; ++i) {
    std::memcpy(&records_->settings[i], records[i].bytes.data(), kRecordBytes);
  }
}

std::array<Record, 2> ModuleRun::Records() const {
  std::array<Record, 2> records;
  for (std::size_t i = 0; i < 2; ++i) {
    std::memcpy(records[i].bytes.data(), &records_->settings[i], kRecordBytes);
  }
  return records;
}

Outcome ModuleRun::Run(const HostCall& call) {
  Outcome outcome = Unwritten(call);
  Dispatch(call, outcome);
  outcome.error = PMGetScanError();
  return outcome;
}

void ModuleRun::Dispatch(const HostCall& call, Outcome& outcome) {
  const tests::MeantLeak commandSetOfTheOpenBefore;
  ScannerSettings& settings = records_->settings[call.argument % 2];
  switch (call.callee) {
    case Export::kOpenScanner:
      outcome.result = PMOpenScanner(&settings);
      return;
    case Export::kSetScannerHardware:
      return PMSetScannerHardware(&settings);
    case Export::kInitAcquire:
      return SetUp(call, outcome);
    case Export::kAcquireImage:
      return Acquire(call, outcome);
    case Export::kAbortScan:
      return PMAbortScan();
    case Export::kCloseScanner:
      return PMCloseScanner();
    case Export::kEject:
      return PMEject(nullptr);
    case Export::kFeed:
      return PMFeed(nullptr);
    case Export::kReset:
      outcome.result = PMReset();
      return;
    case Export::kGetOptionStatus:
      outcome.result = PMGetOptionStatus(call.argument);
      return;
    case Export::kSetFocus:
      outcome.result = PMSetFocus(call.argument, call.position);
      return;
    case Export::kEnableOption:
      outcome.result = PMEnableOption(call.argument);
      return;
    case Export::kGetScanPaperSize:
      outcome.result = PMGetScanPaperSize(call.argument, &outcome.paperWidth, &outcome.paperHeight);
      return;
  }
}

}  // namespace pmddb832::models
