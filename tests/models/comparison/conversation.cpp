#include "tests/models/comparison/conversation.h"

#include <algorithm>

#include "tests/models/comparison/extended_scanner.h"
#include "tests/models/comparison/standard_scanner.h"

namespace pmddb832::models {

Conversation::Conversation(Family family, std::uint64_t seed, void* device)
    : family_(family), random_(seed), device_(device), callsLeft_(random_.Between(8, 40)) {
  ChooseManners();
  const Manners atFirst = random_.OneIn(4) ? manners_ : Manners{};
  if (family == Family::kExtended) {
    scanner_ = std::make_unique<ExtendedScanner>(random_, atFirst);
  } else {
    scanner_ = std::make_unique<StandardScanner>(random_, atFirst);
  }
  model_ = std::make_unique<ModuleModel>(*scanner_);
  for (Record& record : model_->records) ChooseRecord(record);
}

// Half of the scanners make no fault, and a third tells nothing odd.
void Conversation::ChooseManners() {
  manners_.fault = random_.Pick({0u, 0u, 0u, 400u, 150u, 40u});
  manners_.odd = random_.Pick({0u, 0u, 200u, 80u, 30u, 12u});
}

void Conversation::ChooseRecord(Record& record) {
  for (std::uint8_t& byte : record.bytes) byte = random_.Byte();
  record.Set(kDocFeedOption, random_.Below(3));
  if (random_.OneIn(2)) record.Set(kCommandLevel, 8);
  record.Set(kScanSource, 0);
  record.Set(kProgressWindow, random_.OneIn(3) ? nullptr : device_);
  record.Set(kDeviceInterface, device_);
  record.Set(kUseDeviceInterface, random_.OneIn(2) ? 1u : 0x80000000u);
  record.SetText(kModelId,
                 random_.Pick({"", "", "QM6000", "RV3100", "QM43000", "RV7000H", "HK300", "WX4000",
                               "NoSuch", "QM600"}),
                 8);
  ChooseScan(record);
}

void Conversation::ChooseScan(Record& record) {
  record.Set(kPixelType, family_ == Family::kExtended
                             ? random_.Pick({0u, 2u, 5u, 6u, 7u, 8u})
                             : random_.Pick({0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u, 8u}));
  if (random_.OneIn(60)) record.Set(kPixelType, random_.Pick({3u, 4u, 9u, 0x80000000u}));
  record.Set(kResolution, random_.Pick({50, 75, 100, 150, 200, 300, 400, 600, 1200}));
  record.Set(kZoom, random_.OneIn(3) ? random_.Pick({50, 99, 133, 200}) : 100);
  if (random_.OneIn(6)) {
    record.Set(kResolution, random_.Between(40, 2500));
    record.Set(kZoom, random_.Between(50, 200));
  }
  record.Set(kPreviewMode, random_.OneIn(4));
  record.Set(kMirrorImage, random_.OneIn(3) ? random_.Between(1, 2) : 0);
  record.Set(kMonoScan, random_.OneIn(8));
  ChooseArea(record);
  ChooseOptions(record);
}

// Small pages, tall ones and wide ones; most begin near the corner.
void Conversation::ChooseArea(Record& record) {
  const std::uint32_t shape = random_.Below(20);
  std::uint32_t width = random_.Between(1, 90), height = random_.Between(1, 40);
  if (shape == 0) height = random_.Between(250, 700);
  if (shape == 1) width = random_.Between(1000, 9000);
  if (shape == 2) width = random_.Between(100, 500);
  if (random_.OneIn(100)) width = random_.Pick({0u, 16128u, 16129u, 32752u, 32753u, 65535u});
  if (random_.OneIn(150)) height = random_.Pick({0u, 65535u, 65536u});
  record.Set(kAreaWidthPx, width);
  record.Set(kAreaHeightPx, height);
  record.Set(kAreaLeftPx, random_.Below(random_.OneIn(5) ? 4000 : 60));
  record.Set(kAreaTopPx, random_.Below(60));
  if (random_.OneIn(60)) record.Set(kAreaTopPx, random_.Pick({65535u, 65536u}));
  const auto origin = [&] {
    const std::uint32_t most = random_.Pick({400u, 4000u, 4000u, 90000u});
    return (random_.Below(most) - (random_.OneIn(20) ? 900.0 : 0.0)) / 100;
  };
  record.Set(kOriginX, origin());
  record.Set(kOriginY, origin());
  if (random_.OneIn(6)) MoveToRightEdge(record);
  // The whole height, for a page that is centred.
  const std::uint32_t whole = record[kBedHeight] * record[kResolution] / 100;
  if (random_.OneIn(8) && whole <= 700) record.Set(kAreaHeightPx, whole);
}

// The line ends some pixels before or behind the end of the bed.
void Conversation::MoveToRightEdge(Record& record) {
  const double dotsPerInch = record[kResolution] * record[kZoom] / 100.0;
  const double edge = record[kBedWidth] * dotsPerInch / 100 - record[kAreaWidthPx];
  const double left = edge + random_.Below(40) - 20;
  if (left < 0 || left > 60000) return;
  record.Set(kAreaLeftPx, left);
  record.Set(kOriginX, left * 100 / dotsPerInch);
}

void Conversation::ChooseOptions(Record& record) {
  record.Set(kScanSource, random_.OneIn(2) ? 0u : random_.OneIn(20) ? random_.Between(2, 3) : 1u);
  record.Set(kDropoutChannel, random_.Below(5));
  record.Set(kInvertMono, random_.OneIn(3) ? random_.Byte() : 0);
  record.Set(kBrightness, static_cast<int>(random_.Below(2400)) - 1200);
  record.Set(kSharpness, static_cast<int>(random_.Below(2400)) - 1200);
  record.Set(kHalftoneIndex, static_cast<int>(random_.Below(12)) - 1);
  record.Set(kGamma, random_.Pick({100, 180, 220, 250, 280, 300}));
  record.Set(kParamG, random_.Below(3));
  record.Set(kAltColorMode, random_.Below(3));
  record.Set(kWhitePadding, random_.OneIn(2) ? random_.Byte() : 0);
  record.Set(kCustomGamma, random_.OneIn(4));
  record.Set(kCustomGammaCode, random_.OneIn(2) ? 4 : random_.Byte());
  record.Set(kColorCorrection, random_.OneIn(4) ? random_.Byte() : 0);
  record.Set(kHalftoneOverride, random_.OneIn(4));
  record.Set(kOptionS, random_.OneIn(2));
  record.Set(kKeepPaper, random_.OneIn(3));
  record.Set(kThresholdT, random_.OneIn(2) ? 0xFFFFu : random_.Byte());
}

HostCall Conversation::NextCall() {
  --callsLeft_;
  if (!open_ && !random_.OneIn(30)) return {.callee = Export::kOpenScanner, .argument = current_};
  // Only for one call there is no device.
  Current().Set(kDeviceInterface, random_.OneIn(300) ? nullptr : device_);
  return scanning_ ? ScanningCall() : IdleCall();
}

HostCall Conversation::IdleCall() {
  if (random_.OneIn(3)) return AnyCall();
  if (random_.OneIn(15)) return BandCall();  // without a set-up
  if (!random_.OneIn(8)) ChooseScan(Current());
  return {.callee = Export::kInitAcquire,
          .argument = random_.OneIn(2) ? Current()[kPixelType] : random_.Below(9),
          .tellsProgress = !random_.OneIn(3)};
}

HostCall Conversation::ScanningCall() {
  if (random_.OneIn(30)) return {.callee = Export::kAbortScan};
  if (random_.OneIn(25)) return AnyCall();
  if (random_.OneIn(60)) ChooseOptions(Current());  // amid a scan
  return BandCall();
}

// As many whole lines as the host likes, and maybe some bytes over.
HostCall Conversation::BandCall() {
  const std::uint32_t wanted = random_.OneIn(2) ? lines_ : random_.Between(1, lines_ + 1);
  std::uint64_t bytes = std::uint64_t{lineBytes_} * wanted;
  if (random_.OneIn(4)) bytes += random_.Below(100);
  if (random_.OneIn(60)) bytes = random_.Below(lineBytes_ + 1);
  return {.callee = Export::kAcquireImage,
          .bufferBytes = static_cast<std::uint32_t>(std::min<std::uint64_t>(bytes, 300000)),
          .bandStatus = random_.Pick({0u, 1u, 3u})};
}

HostCall Conversation::AnyCall() {
  const auto callee =
      random_.Pick({Export::kGetOptionStatus, Export::kGetOptionStatus, Export::kGetScanPaperSize,
                    Export::kEnableOption, Export::kSetFocus, Export::kSetFocus, Export::kEject,
                    Export::kFeed, Export::kReset, Export::kAbortScan, Export::kCloseScanner,
                    Export::kSetScannerHardware, Export::kOpenScanner, Export::kInitAcquire});
  HostCall call{.callee = callee};
  switch (callee) {
    case Export::kSetFocus:
      call.argument = random_.Below(3);
      call.position = random_.Byte();
      break;
    case Export::kOpenScanner:
    case Export::kSetScannerHardware:
      current_ = call.argument = random_.Below(2);
      Current().Set(kDeviceInterface, device_);
      break;
    default:
      call.argument = random_.OneIn(30) ? 257 : random_.Below(4);
  }
  return call;
}

void Conversation::Learn(const HostCall& call, const Outcome& outcome) {
  if (call.callee == Export::kOpenScanner) {
    open_ = outcome.result == 1;
    scanning_ = false;
    if (open_) scanner_->Become(manners_);
  }
  if (call.callee == Export::kCloseScanner) open_ = scanning_ = false;
  if (call.callee == Export::kInitAcquire) {
    scanning_ = outcome.setup[kSetupStatus] == kGoOn || random_.OneIn(20);
    lineBytes_ = std::min(outcome.setup[kSetupLineBytes], 70000u);
    lines_ = std::min(outcome.setup[kSetupHeight], 3000u);
  }
  if (call.callee == Export::kAcquireImage) {
    const bool ended = outcome.band[kBandStatus] != kGoOn || outcome.band[kBandDone] == 1;
    if (ended) scanning_ = random_.OneIn(10);
  }
}

}  // namespace pmddb832::models
