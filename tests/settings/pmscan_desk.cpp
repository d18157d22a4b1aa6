#include "tests/settings/pmscan_desk.h"

#include <utility>

#include "pmscan/pictures/picture_pixels.h"
#include "pmscan/scan/batch.h"
#include "simulator/extended/extended_scanner.h"
#include "simulator/standard/standard_scanner.h"

namespace pmddb832::tests {
namespace {

constexpr simulator::PixelSize kBed{517, 301};           // at 600 dpi
constexpr simulator::PixelSize kStandardBed{1046, 602};  // at 1200 dpi

template <class Scanner, class Config>
std::unique_ptr<simulator::PageScanner> Make(Config config, const TestedScanner& tested,
                                             simulator::Picture document) {
  config.identity.level = tested.level;
  config.identity.flatbed = config.identity.feeder = kBed;
  config.identity.feederFlags = tested.feederFlags;
  if (!tested.productName.empty()) config.identity.productName = tested.productName;
  if (tested.feederFlags != 0) {
    config.optionUnit = simulator::OptionUnit::kFeeder;
    config.feederPages = {document};
  }
  config.onBed = std::move(document);
  if constexpr (std::is_same_v<Scanner, simulator::StandardScanner>) {
    config.identity.resolutions = {50, 75, 150, 300, 600, 1200};
    config.identity.flatbed = config.identity.feeder = kStandardBed;
  }
  return std::make_unique<Scanner>(std::move(config));
}

// Takes the lines of the one page.
class PageTaker : public pmscan::PageStore, public pmscan::RowSink {
 public:
  pmscan::RowSink& Begin(std::uint32_t, std::uint32_t, std::uint32_t) override { return *this; }
  void Write(std::span<const std::uint8_t> rows, std::uint32_t, std::uint32_t) override {
    lines.insert(lines.end(), rows.begin(), rows.end());
  }
  void End(std::uint32_t) override {}
  void Finish() override {}
  std::string FileOf(std::uint32_t) const override { return {}; }
  const std::vector<pmscan::SavedFile>& Files() const override { return files; }

  std::vector<std::uint8_t> lines;
  std::vector<pmscan::SavedFile> files;
};

}  // namespace

PmscanDesk::PmscanDesk(const TestedScanner& tested, simulator::Picture document)
    : exports(ExportsOf(module)) {
  SetMode("grey");
  options.source = *pmscan::FindScanSource("flatbed");
  options.dotsPerInch = 150;
  scanner = tested.isExtended ? Make<simulator::ExtendedScanner>(simulator::ExtendedScannerConfig{},
                                                                 tested, std::move(document))
                              : Make<simulator::StandardScanner>(simulator::StandardScannerConfig{},
                                                                 tested, std::move(document));
  bed.emplace(*scanner, true);
  settings.deviceInterface = &*bed;
  settings.useDeviceInterface = 1;
  tested.modelId.copy(settings.modelId, sizeof settings.modelId - 1);
  session.emplace(exports, settings);
  bed->CorrectLevel(settings);
}

WrittenPicture PmscanDesk::Scan() {
  const pmscan::ScanPlan plan = PlanScan(options, settings);
  session->Select(options.source);
  DescribeScan(plan.asked, settings);
  PageTaker page;
  std::vector<pmscan::SavedPage> saved;
  pmscan::BatchManners manners;
  manners.acquisition.isInterrupted = [] { return false; };
  ScanPages(exports, {options.source, plan.window, plan.asked.mode.outputFormat, 1, 0}, manners,
            page, saved);
  std::vector<std::uint8_t> buffer;
  const auto pixels = PicturePixels(page.lines, options.mode, plan.sampleBits, buffer);
  return {plan, {pixels.begin(), pixels.end()}, pixels.size() / plan.picture.area.height};
}

void PmscanDesk::SetArea(const pmscan::PixelArea& area) {
  constexpr auto kPixel = pmscan::LengthUnit::kPixel;
  options.area = {{double(area.left), kPixel},
                  {double(area.top), kPixel},
                  {double(area.width), kPixel},
                  {double(area.height), kPixel}};
}

}  // namespace pmddb832::tests
