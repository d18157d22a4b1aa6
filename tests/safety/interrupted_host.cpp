#include "tests/safety/interrupted_host.h"

#include <array>
#include <utility>

#include "simulator/catalog/catalog.h"
#include "tests/safety/guarded_memory.h"
#include "tests/safety/meant_leak.h"
#include "tests/safety/module_memory.h"
#include "tests/scans/whole_scan.h"

namespace pmddb832::tests {
namespace {

constexpr std::int32_t kFailure = -1;

constexpr std::uint32_t kWidth = 1100;
constexpr std::uint32_t kHeight = 20;
constexpr std::uint8_t kNoFocusPosition = 156;
// A session takes some hundred transfers. Behind that many, every further one fails, so that a call
// that goes round in circles ends.
constexpr std::size_t kMostTransfers = 2000;

std::function<void()> currentProgress;

const simulator::Picture& OnBed() {
  static const simulator::Picture picture = ColourPicture(100, 20);
  return picture;
}

// What the calls without a result tell.
StepResult NothingTold() {
  return {true, {}};
}

StepResult OneIsSuccess(std::uint32_t value) {
  return {value != 1, {value}};
}

StepResult ZeroIsSuccess(std::uint32_t value) {
  return {value != 0, {value}};
}

StepResult OpenStep(InterruptedHost& host) {
  const std::uint32_t opened = host.Open(host.settings);
  host.settings.scanSource = host.source;
  return OneIsSuccess(opened);
}

StepResult StatusStep(InterruptedHost& host) {
  return ZeroIsSuccess(host->GetOptionStatus(host.settings.docFeedOption));
}

StepResult EnableOptionStep(InterruptedHost& host) {
  return OneIsSuccess(host->EnableOption(host.source));
}

StepResult PaperSizeStep(InterruptedHost& host) {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  StepResult result = ZeroIsSuccess(host->GetScanPaperSize(0, &width, &height));
  result.values.insert(result.values.end(), {width, height});
  return result;
}

StepResult FocusStep(InterruptedHost& host) {
  const std::uint8_t position = host->SetFocus(0, 64);
  return {position == kNoFocusPosition, {position}};
}

StepResult SetUpStep(InterruptedHost& host) {
  const AcquisitionSetup setup = host.SetUp(5);
  return {setup.status != kAcquisitionGoOn,
          {setup.status, setup.lineBytes, setup.widthPixels, setup.heightLines}};
}

StepResult AcquireStep(InterruptedHost& host) {
  return host.Acquire();
}

StepResult AbortStep(InterruptedHost& host) {
  host->AbortScan();
  return NothingTold();
}

StepResult FeedStep(InterruptedHost& host) {
  host->Feed(nullptr);
  return NothingTold();
}

StepResult EjectStep(InterruptedHost& host) {
  host->Eject(nullptr);
  return NothingTold();
}

StepResult ResetStep(InterruptedHost& host) {
  return OneIsSuccess(host->Reset());
}

StepResult CloseStep(InterruptedHost& host) {
  host->CloseScanner();
  return NothingTold();
}

constexpr std::array kWholeSession{SessionStep{"open", OpenStep},
                                   SessionStep{"option status", StatusStep},
                                   SessionStep{"enable option", EnableOptionStep},
                                   SessionStep{"paper size", PaperSizeStep},
                                   SessionStep{"focus", FocusStep},
                                   SessionStep{"set up", SetUpStep},
                                   SessionStep{"first band", AcquireStep},
                                   SessionStep{"second band", AcquireStep},
                                   SessionStep{"last band", AcquireStep},
                                   SessionStep{"eject", EjectStep},
                                   SessionStep{"feed", FeedStep},
                                   SessionStep{"set up again", SetUpStep},
                                   SessionStep{"band of another scan", AcquireStep, true},
                                   SessionStep{"abort", AbortStep},
                                   SessionStep{"eject the rest", EjectStep},
                                   SessionStep{"reset", ResetStep},
                                   SessionStep{"close", CloseStep},
                                   SessionStep{"open again", OpenStep},
                                   SessionStep{"close again", CloseStep}};

constexpr std::array kScan{SessionStep{"open", OpenStep},          SessionStep{"set up", SetUpStep},
                           SessionStep{"first band", AcquireStep}, SessionStep{"next", AcquireStep},
                           SessionStep{"last band", AcquireStep},  SessionStep{"close", CloseStep}};

}  // namespace

std::span<const SessionStep> WholeSession() {
  return kWholeSession;
}

std::int32_t InterruptedHost::Device::RawReadData(void* buffer, std::uint32_t* byteCount,
                                                  void* overlapped) {
  return Begin(Place::kRead) ? scanner->RawReadData(buffer, byteCount, overlapped) : kFailure;
}

std::int32_t InterruptedHost::Device::RawWriteData(void* buffer, std::uint32_t byteCount,
                                                   void* overlapped) {
  return Begin(Place::kWrite) ? scanner->RawWriteData(buffer, byteCount, overlapped) : kFailure;
}

bool InterruptedHost::Device::Begin(Place place) {
  ++transfers;
  host.Reached(place);
  return transfers < kMostTransfers;
}

InterruptedHost::InterruptedHost(const char* scannerName, std::uint8_t scanSource)
    : source(scanSource), scannerName_(scannerName), window_([this] { Reached(Place::kRepaint); }) {
  WatchModule();
  MemoryOfModule().guard = GuardWithoutSanitizer();
  currentProgress = [this] { Reached(Place::kProgress); };
  Prepare();
}

InterruptedHost::~InterruptedHost() {
  interruption_ = nullptr;
  MemoryOfModule().guard.reset();
}

void InterruptedHost::Prepare() {
  for (Device* const device : {&device_, &otherDevice_}) {
    device->scanner = simulator::MakeScanner(scannerName_, OnBed());
    device->transfers = 0;
  }
  settings = {};
  settings.deviceInterface = &device_;
  settings.useDeviceInterface = 1;
  settings.pixelType = 5;
  settings.resolution = 300;
  settings.zoom = 100;
  settings.gamma = 100;
  settings.thresholdT = kThresholdUnset;
  settings.areaWidthPx = kWidth;
  settings.areaHeightPx = kHeight;
  settings.progressWindow = window_.Handle();
  otherSettings = settings;
  otherSettings.deviceInterface = &otherDevice_;
  otherSettings.pixelType = 2;
  otherSettings.areaWidthPx = kWidth / 2;
}

void InterruptedHost::InterruptAt(std::size_t moment, std::function<void()> interruption) {
  interruptedMoment_ = moment;
  interruption_ = std::move(interruption);
}

void InterruptedHost::Reached(Place place) {
  if (isInterrupted_) return;
  const std::size_t moment = moments_.size();
  moments_.push_back(place);
  if (moment != interruptedMoment_ || interruption_ == nullptr) return;
  isInterrupted_ = true;
  interruption_();
  isInterrupted_ = false;
}

StepResult InterruptedHost::Run(const SessionStep& step) {
  StepResult result = step.run(*this);
  result.error = module_->GetScanError();
  return result;
}

std::vector<StepResult> InterruptedHost::ScanAfresh() {
  interruption_ = nullptr;
  module_->CloseScanner();
  Prepare();
  std::vector<StepResult> results;
  for (const SessionStep& step : kScan) results.push_back(Run(step));
  return results;
}

std::uint32_t InterruptedHost::Open(ScannerSettings& record) {
  const MeantLeak formerCommandSet;
  return module_->OpenScanner(&record);
}

AcquisitionSetup InterruptedHost::SetUp(std::uint32_t outputFormat) {
  AcquisitionSetup setup{};
  module_->InitAcquire(
      outputFormat, [](std::uint32_t) { currentProgress(); }, &setup);
  return setup;
}

StepResult InterruptedHost::Acquire() {
  const GuardedMemory memory(kBandBytes, Guard::kBehind);
  const auto bytes = memory.Bytes();
  AcquisitionBand band{};
  module_->AcquireImage(bytes.data(), kBandBytes, &band);
  return {band.status != kAcquisitionGoOn,
          {band.status, band.done, band.lines, band.bytes},
          {bytes.begin(), bytes.end()}};
}

}  // namespace pmddb832::tests
