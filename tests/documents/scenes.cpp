#include "tests/documents/scenes.h"

#include <algorithm>
#include <array>
#include <vector>

#include "capture/record/recorder.h"
#include "capture/record/recording_device.h"
#include "pmscan/captures/recording_module.h"
#include "simulator/catalog/catalog.h"
#include "tests/scans/pmscan_module.h"

namespace documents {
namespace {

constexpr std::uint32_t kTopDownBlueFirst = 5;  // output format

void FillTables(pmddb832::ScannerSettings& settings) {
  settings.customGamma = 1;
  settings.customGammaCode = 4;
  settings.colorCorrection = 1;
  for (std::size_t i = 0; i < 256; ++i) {
    const auto value = static_cast<std::uint8_t>(i);
    settings.gammaTableR[i] = settings.gammaTableG[i] = value;
    settings.gammaTableB[i] = static_cast<std::uint8_t>(255 - value);
  }
  for (const std::size_t diagonal : {0u, 4u, 8u}) settings.colorMatrix[diagonal] = 32;
}

void OpenOnly(SceneHost& host) {
  host.Open();
}

void ScanPage(SceneHost& host) {
  host.Open();
  host.Scan();
}

void ScanThreeLines(SceneHost& host) {
  host.settings.areaHeightPx = 3;
  ScanPage(host);
}

void AbortScan(SceneHost& host) {
  host.Open();
  host.settings.areaHeightPx = 600;
  host.SetUp();
  host.Acquire(10);
  host.module.abortScan();
}

void ScanFeederPage(SceneHost& host) {
  host.Open();
  host.ChooseFeeder();
  host.settings.pixelType = 0;
  host.settings.areaHeightPx = 24;
  host.module.getOptionStatus(0);
  host.Scan();
  host.module.getOptionStatus(0);
}

void MovePage(SceneHost& host) {
  host.Open();
  host.module.feed(nullptr);
  host.module.feed(nullptr);
  host.module.reset();
}

void SendTables(SceneHost& host) {
  host.Open();
  host.settings.pixelType = 5;
  FillTables(host.settings);
  host.Scan();
}

void ScanWithThreshold(SceneHost& host) {
  host.Open();
  host.settings.pixelType = 0;
  host.settings.thresholdT = 0x70;
  host.Scan();
}

void FailScan(SceneHost& host) {
  ScanPage(host);
  host.module.getScanError();
}

void JamPage(SceneHost& host) {
  host.Open();
  host.ChooseFeeder();
  host.Scan();
  host.module.getScanError();
}

void Focus(SceneHost& host) {
  host.Open();
  host.module.setFocus(0, 10);
  host.module.setFocus(1, 0);
}

constexpr std::array kScenes{
    Scene{"extended-open", "extended:QM2500", OpenOnly},
    Scene{"extended-scan", "extended", ScanPage},
    Scene{"extended-tables", "extended", SendTables},
    Scene{"extended-abort", "extended", AbortScan},
    Scene{"extended-feeder", "extended:QM2500+pages=1", ScanFeederPage},
    Scene{"extended-careful-feeder", "extended:QM6500+pages=1", ScanFeederPage},
    Scene{"extended-jam", "extended:QM2500+pages=1+jam-at-line=20", JamPage},
    Scene{"extended-warm-up", "extended+warm-up=2", FailScan},
    Scene{"extended-focus", "extended", Focus},
    Scene{"page", "extended:QM2500+pages=1", MovePage},
    Scene{"refusal", "standard+nak-parameters=D", ScanPage},
    Scene{"standard-open", "standard:RV3000", OpenOnly},
    Scene{"standard-scan", "standard", ScanPage},
    Scene{"standard-lines", "standard:HK300", ScanThreeLines},
    Scene{"standard-tables", "standard", SendTables},
    Scene{"standard-threshold", "standard", ScanWithThreshold},
    Scene{"standard-abort", "standard", AbortScan},
    Scene{"standard-feeder", "standard:RV3000+pages=1", ScanFeederPage},
    Scene{"standard-error", "standard+fatal-at-block=1", FailScan},
};

// A white sheet of ten inches by fifteen.
simulator::Picture WhiteSheet() {
  simulator::Picture sheet{20, 30, 2, {}};
  sheet.samples.assign(std::size_t{3} * sheet.width * sheet.height, 0xFFFF);
  return sheet;
}

}  // namespace

SceneHost::SceneHost(pmddb832::StillImageDevice& device) {
  settings.deviceInterface = &device;
  settings.useDeviceInterface = 1;
  settings.pixelType = 2;
  settings.resolution = settings.zoom = settings.gamma = 100;
  settings.thresholdT = pmddb832::kThresholdUnset;
  settings.areaWidthPx = 40;
  settings.areaHeightPx = 300;
}

void SceneHost::ChooseFeeder() {
  settings.scanSource = 1;
  module.enableOption(1);
}

void SceneHost::SetUp() {
  pmddb832::AcquisitionSetup setup{};
  module.initAcquire(kTopDownBlueFirst, nullptr, &setup);
  lineBytes_ = setup.lineBytes;
}

void SceneHost::Acquire(std::uint32_t lines) {
  std::vector<std::uint8_t> buffer(std::size_t{lines} * lineBytes_);
  pmddb832::AcquisitionBand band{};
  module.acquireImage(buffer.data(), static_cast<std::uint32_t>(buffer.size()), &band);
}

void SceneHost::Scan() {
  SetUp();
  Acquire(settings.areaHeightPx);
}

std::span<const Scene> Scenes() {
  return kScenes;
}

capture::Capture Play(const Scene& scene) {
  const auto scanner = simulator::MakeScanner(scene.scanner, WhiteSheet());
  capture::Capture capture;
  capture::Recorder recorder(
      [&capture](const capture::Entry& entry) { capture.entries.push_back(entry); },
      [] { return std::uint64_t{0}; }, false);
  capture::RecordingDevice device(*scanner, recorder);
  SceneHost host(device);
  recorder.Watch(host.settings);
  const pmddb832::tests::ModuleUnderTest module;
  const pmscan::RecordingModule calls(pmddb832::tests::ExportsOf(module), recorder);
  host.module = pmscan::RecordingModule::Exports();
  scene.play(host);
  return capture;
}

}  // namespace documents
