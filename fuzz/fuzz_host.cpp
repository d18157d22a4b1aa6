#include "fuzz/fuzz_host.h"

#include <algorithm>
#include <array>

#include "extended/ext_scan_cmd.h"
#include "fuzz/host_buffer.h"
#include "fuzz/host_calls.h"
#include "fuzz/scanner_names.h"
#include "interface/exports.h"
#include "interface/lifecycle.h"
#include "platform/native.h"
#include "standard/std_scan_cmd.h"

// What the module gives back is soon handed out again: a long quarantine would have every
// conversation touch new memory.
// NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming): its name
extern "C" const char* __asan_default_options() {
  return "quarantine_size_mb=4";
}

namespace pmddb832::fuzz {
namespace {

constexpr std::uint32_t kProcessDetach = 0;
constexpr std::size_t kMostBytesWanted = 1 << 18;
constexpr std::uint32_t kMostRows = 32;
constexpr int kMostBands = 16;

using platform::OperatingSystemVersion;
constexpr std::array<std::optional<OperatingSystemVersion>, 8> kSystems{
    {OperatingSystemVersion{2, 5, 1}, std::nullopt, OperatingSystemVersion{0, 3, 1},
     OperatingSystemVersion{1, 4, 0}, OperatingSystemVersion{1, 4, 10},
     OperatingSystemVersion{2, 4, 0}, OperatingSystemVersion{3, 0, 0},
     OperatingSystemVersion{2, 6, 1}}};

FuzzHost* currentHost = nullptr;

void CallFromWithin() {
  currentHost->MakeNextCall();
}

void CallOutOfRepaint(void* /*window*/) {
  CallFromWithin();
}

std::optional<std::size_t> Granted(std::uint8_t count) {
  return count == 0 ? std::nullopt : std::optional<std::size_t>(count - 1);
}

std::uint32_t Flag(std::uint8_t flags, int bit) {
  return flags >> bit & 1;
}

void ApplyFlags(std::uint8_t flags, ScannerSettings& settings) {
  settings.mirrorImage = Flag(flags, 0);
  settings.previewMode = Flag(flags, 1);
  settings.monoScan = Flag(flags, 2);
  settings.customGamma = Flag(flags, 3);
  settings.colorCorrection = Flag(flags, 4);
  settings.halftoneOverride = Flag(flags, 5);
  settings.optionS = Flag(flags, 6);
  settings.keepPaper = Flag(flags, 7);
}

}  // namespace

FuzzHost::FuzzHost(const Conversation& conversation, Family family)
    : device(conversation, family, CallFromWithin), conversation_(conversation) {
  currentHost = this;
  settings.deviceInterface = &device;
  settings.useDeviceInterface = 1;
  const auto model = ModelId(conversation.host);
  std::copy(model.begin(), model.end(), settings.modelId);
  Surround();
}

FuzzHost::~FuzzHost() {
  allocations_.reset();
  device.ForgetFaults();
  Unload();
  currentSettings = nullptr;
  extendedSupport = 0;
  platform::NativePlatform& native = platform::Native();
  native.heapAllocationsLeft.reset();
  native.repaintedWindows.clear();
  native.logLines.clear();
}

void FuzzHost::Surround() {
  const HostBlock& block = conversation_.host;
  platform::NativePlatform& native = platform::Native();
  native.onRepaint = CallOutOfRepaint;
  native.version = kSystems[Get(block, host::kSystem) % kSystems.size()];
  native.heapAllocationsLeft = Granted(Get(block, host::kHeapBlocks));
  if (const auto granted = Granted(Get(block, host::kAllocations)); granted.has_value()) {
    allocations_.emplace(*granted);
  }
  if ((Get(block, host::kFlags) & host::kHasWindow) != 0) settings.progressWindow = this;
}

void FuzzHost::Converse() {
  const std::uint8_t flags = Get(conversation_.host, host::kFlags);
  ++depth_;
  if ((flags & host::kHasLog) != 0) OpenWithLog();
  if ((flags & host::kStaysClosed) == 0) Open();
  --depth_;
  ChooseScan();
  while (callsMade_ < conversation_.calls.count) MakeNextCall();
}

void FuzzHost::MakeNextCall() {
  if (callsMade_ == conversation_.calls.count) return;
  const HostCall& call = conversation_.calls.items[callsMade_++];
  ++depth_;
  MakeCall(*this, call);
  --depth_;
}

// A further open leaves the former command set behind, closed or not. The host gives it back with
// the unload, so that no conversation keeps what it took: behind those that do, libFuzzer looks for
// leaks, which takes far longer than the conversation.
void FuzzHost::Open() {
  device.NextCall();
  NoteCommandSet();  // of an open that this one comes from within
  PMOpenScanner(&settings);
  NoteCommandSet();
}

// Only there is a log: the stand-in takes longer to write a line than a transfer takes.
void FuzzHost::OpenWithLog() {
  platform::Native().logAvailable = true;
  Open();
  platform::Native().logAvailable = false;
  Unload();
}

void FuzzHost::NoteCommandSet() {
  const auto isCurrent = [](const CommandSet& noted) { return noted.set == currentCommandSet; };
  const auto noted = commandSets_.All();
  if (currentCommandSet == nullptr || std::any_of(noted.begin(), noted.end(), isCurrent)) return;
  commandSets_.Add({currentCommandSet, UsesExtendedSet()});
}

void FuzzHost::Unload() {
  device.NextCall();
  DestroyFormerCommandSets();
  DllMain(this, kProcessDetach, nullptr);
}

// The current one is the module's.
void FuzzHost::DestroyFormerCommandSets() {
  for (const CommandSet& former : commandSets_.All()) {
    if (former.set == currentCommandSet) continue;
    if (former.isExtended) {
      delete static_cast<ExtScanCmd*>(former.set);
    } else {
      delete static_cast<StdScanCmd*>(former.set);
    }
  }
  commandSets_.count = 0;
}

void FuzzHost::ChooseScan() {
  const HostBlock& block = conversation_.host;
  settings.pixelType = Get(block, host::kPixelType);
  settings.areaWidthPx = Get(block, host::kWidth);
  settings.areaHeightPx = Get(block, host::kHeight);
  settings.areaLeftPx = Get(block, host::kLeft);
  settings.areaTopPx = Get(block, host::kTop);
  settings.originX = Get(block, host::kOriginX);
  settings.originY = Get(block, host::kOriginY);
  settings.resolution = Get(block, host::kResolution);
  settings.zoom = Get(block, host::kZoom);
  settings.thresholdT = Get(block, host::kThreshold);
  settings.gamma = Get(block, host::kGamma);
  ApplyFlags(Get(block, host::kScanFlags), settings);
  settings.invertMono = Get(block, host::kInvertMono);
  settings.scanSource = Get(block, host::kScanSource);
  settings.paramG = Get(block, host::kParamG);
  settings.dropoutChannel = Get(block, host::kDropoutChannel);
  settings.whitePadding = Get(block, host::kWhitePadding);
  settings.halftoneIndex = Get(block, host::kHalftone) - 1;
  settings.altColorMode = Get(block, host::kAltColorMode);
  settings.customGammaCode = Get(block, host::kCustomGammaCode);
  settings.optionParam = Get(block, host::kOptionParam);
}

void FuzzHost::Scan(std::uint32_t outputFormat, std::uint32_t rows) {
  SetUp(outputFormat, nullptr);
  for (int band = 0; band < kMostBands && Acquire(rows, 0); ++band) {
  }
}

void FuzzHost::SetUp(std::uint32_t outputFormat, ProgressCallback progress) {
  AcquisitionSetup setup{};
  device.NextCall();
  PMInitAcquire(outputFormat, progress, &setup);
  lineBytes_ = setup.lineBytes;
}

bool FuzzHost::Acquire(std::uint32_t rows, std::uint32_t status) {
  return AcquireInto(std::size_t{lineBytes_} * (rows % (kMostRows + 1)), status);
}

bool FuzzHost::AcquireInto(std::size_t bytes, std::uint32_t status) {
  if (bytes > kMostBytesWanted - bytesWanted_) return false;
  bytesWanted_ += bytes;
  const HostBuffer buffer(bytes);
  const std::span<std::uint8_t> rows = buffer.Bytes();
  AcquisitionBand band{};
  band.status = status;
  device.NextCall();
  PMAcquireImage(rows.data(), static_cast<std::uint32_t>(rows.size()), &band);
  return band.status == kAcquisitionGoOn && band.done == 0;
}

}  // namespace pmddb832::fuzz
