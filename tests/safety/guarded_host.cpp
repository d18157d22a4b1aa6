#include "tests/safety/guarded_host.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <new>

#include "tests/safety/module_memory.h"

namespace pmddb832::tests {
namespace {

constexpr std::uint8_t kUntouched = 0xA5;
constexpr std::uint32_t kLeft = 3;  // pixels at 300 dpi: a hundredth of an inch
constexpr std::uint32_t kTop = 6;

template <class Record>
Record& In(const GuardedMemory& memory) {
  return *std::launder(reinterpret_cast<Record*>(memory.Bytes().data()));
}

template <class Record>
GuardedMemory Guarded(Guard guard) {
  GuardedMemory memory(sizeof(Record), guard);
  new (memory.Bytes().data()) Record{};
  return memory;
}

}  // namespace

GuardedHost::GuardedHost(StillImageDevice& scanner, Guard guard)
    : guard_(guard),
      record_(Guarded<ScannerSettings>(guard)),
      setup_(Guarded<AcquisitionSetup>(guard)) {
  WatchModule();
  MemoryOfModule().guard = guard;
  ScannerSettings& settings = Settings();
  settings.deviceInterface = &scanner;
  settings.useDeviceInterface = 1;
  settings.pixelType = 5;
  settings.resolution = 300;
  settings.zoom = 100;
  settings.gamma = 100;
  settings.thresholdT = kThresholdUnset;
  settings.originX = 1;
  settings.originY = 2;
  settings.areaLeftPx = kLeft;
  settings.areaTopPx = kTop;
  settings.areaWidthPx = kWidth;
  settings.areaHeightPx = kHeight;
}

GuardedHost::~GuardedHost() {
  MemoryOfModule().guard.reset();
}

ScannerSettings& GuardedHost::Settings() const {
  return In<ScannerSettings>(record_);
}

AcquisitionSetup GuardedHost::SetUp(std::uint32_t outputFormat) {
  module_->InitAcquire(outputFormat, nullptr, &In<AcquisitionSetup>(setup_));
  lineBytes_ = In<AcquisitionSetup>(setup_).lineBytes;
  return In<AcquisitionSetup>(setup_);
}

AcquisitionBand GuardedHost::Acquire(std::uint32_t bytes) {
  const GuardedMemory band = Guarded<AcquisitionBand>(guard_);
  const GuardedMemory image(bytes, guard_);
  std::fill(image.Bytes().begin(), image.Bytes().end(), kUntouched);
  module_->AcquireImage(image.Bytes().data(), bytes, &In<AcquisitionBand>(band));
  const AcquisitionBand got = In<AcquisitionBand>(band);
  const std::size_t rowBytes = std::size_t{got.lines} * lineBytes_;
  REQUIRE(rowBytes <= bytes);
  const auto behind = image.Bytes().subspan(rowBytes);
  CHECK(std::all_of(behind.begin(), behind.end(),
                    [](std::uint8_t byte) { return byte == kUntouched; }));
  return got;
}

std::uint32_t GuardedHost::PaperSize(std::uint32_t option) {
  const GuardedMemory width = Guarded<std::uint32_t>(guard_);
  const GuardedMemory height = Guarded<std::uint32_t>(guard_);
  return module_->GetScanPaperSize(option, &In<std::uint32_t>(width), &In<std::uint32_t>(height));
}

}  // namespace pmddb832::tests
