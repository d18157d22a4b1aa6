#include "fuzz/fuzz_host.h"

#include <algorithm>
#include <memory>

#include "interface/exports.h"
#include "interface/lifecycle.h"
#include "platform/native.h"

namespace pmddb832::fuzz {
namespace {

constexpr std::uint32_t kMostBufferBytes = 1 << 20;
constexpr std::uint32_t kProcessDetach = 0;
constexpr int kMostBands = 64;

std::uint32_t Flag(std::uint8_t flags, int bit) {
  return flags >> bit & 1;
}

}  // namespace

std::uint8_t Input::Byte() {
  if (bytes_.empty()) return 0;
  const std::uint8_t value = bytes_[0];
  bytes_ = bytes_.subspan(1);
  return value;
}

std::uint16_t Input::Word() {
  const std::uint8_t low = Byte();
  return static_cast<std::uint16_t>(Byte() << 8 | low);
}

std::span<const std::uint8_t> Input::Take(std::size_t count) {
  const auto taken = bytes_.first(std::min(count, bytes_.size()));
  bytes_ = bytes_.subspan(taken.size());
  return taken;
}

void ApplyScanChoices(Input& input, ScannerSettings& settings) {
  settings.pixelType = input.Byte();
  settings.areaWidthPx = input.Word();
  settings.areaHeightPx = input.Word();
  settings.areaLeftPx = input.Word();
  settings.areaTopPx = input.Word();
  settings.originX = input.Word();
  settings.originY = input.Word();
  settings.resolution = input.Word();
  settings.zoom = input.Word();
  settings.thresholdT = input.Word();
  settings.gamma = input.Word();
  const std::uint8_t flags = input.Byte();
  settings.mirrorImage = Flag(flags, 0);
  settings.previewMode = Flag(flags, 1);
  settings.monoScan = Flag(flags, 2);
  settings.customGamma = Flag(flags, 3);
  settings.colorCorrection = Flag(flags, 4);
  settings.halftoneOverride = Flag(flags, 5);
  settings.optionS = Flag(flags, 6);
  settings.keepPaper = Flag(flags, 7);
  settings.invertMono = input.Byte();
  settings.scanSource = input.Byte();
  settings.paramG = input.Byte();
  settings.dropoutChannel = input.Byte();
  settings.whitePadding = input.Byte();
  settings.halftoneIndex = input.Byte() - 1;
  settings.altColorMode = input.Byte();
  settings.customGammaCode = input.Byte();
  settings.optionParam = input.Byte();
  input.Byte();
}

FuzzHost::FuzzHost(std::span<const std::uint8_t> answers) : device(answers) {
  settings.deviceInterface = &device;
  settings.useDeviceInterface = 1;
}

FuzzHost::~FuzzHost() {
  device.NextCall();
  device.CallWithin(0, nullptr);  // nothing is called within an unload
  DllMain(this, kProcessDetach, nullptr);
  currentSettings = nullptr;
  extendedSupport = 0;
  platform::Native().repaintedWindows.clear();
}

void FuzzHost::Open() {
  device.NextCall();
  PMOpenScanner(&settings);
}

void FuzzHost::Scan(std::uint32_t outputFormat, std::uint32_t rows) {
  SetUp(outputFormat);
  for (int band = 0; band < kMostBands && Acquire(rows); ++band) {
  }
}

void FuzzHost::SetUp(std::uint32_t outputFormat, ProgressCallback progress) {
  auto setup = std::make_unique<AcquisitionSetup>();
  device.NextCall();
  PMInitAcquire(outputFormat, progress, setup.get());
  lineBytes_ = setup->lineBytes;
}

bool FuzzHost::Acquire(std::uint32_t rows, std::uint32_t status) {
  const auto bytes = static_cast<std::uint32_t>(
      std::min<std::uint64_t>(std::uint64_t{lineBytes_} * (rows % 65), kMostBufferBytes));
  const auto buffer = std::make_unique<std::uint8_t[]>(bytes);
  auto band = std::make_unique<AcquisitionBand>();
  band->status = status;
  device.NextCall();
  PMAcquireImage(buffer.get(), bytes, band.get());
  return band->status == kAcquisitionGoOn && band->done == 0;
}

}  // namespace pmddb832::fuzz
