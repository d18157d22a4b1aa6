#include "tests/scans/scan_sweep.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <memory>
#include <optional>

#include "pmscan/pictures/picture_pixels.h"
#include "pmscan/scan/batch.h"
#include "pmscan/scan/scan_plan.h"
#include "pmscan/scan/session.h"
#include "simulator/extended/extended_scanner.h"
#include "simulator/standard/standard_scanner.h"
#include "tests/scans/pmscan_module.h"
#include "tests/scans/whole_scan.h"

namespace pmddb832::tests {
namespace {

using pmscan::Options;
using pmscan::PixelArea;
using pmscan::PixelLayout;
using pmscan::ScanPlan;
using simulator::Picture;

constexpr std::uint32_t kBasicResolution = 600;
constexpr simulator::PixelSize kBed{517, 301};  // pixels at that resolution
constexpr std::uint32_t kBedWidth = 86;         // hundredths of an inch, as it is told
constexpr std::uint32_t kBedHeight = 50;
using Pixel = std::vector<std::uint8_t>;

template <class Config>
std::unique_ptr<simulator::Scanner> Make(Config config, const SweptScanner& swept, Picture onBed) {
  config.identity.level = swept.level;
  if (swept.productName != nullptr) config.identity.productName = swept.productName;
  config.identity.flatbed = config.identity.feeder = kBed;
  config.optionUnit = simulator::OptionUnit::kFeeder;
  config.onBed = std::move(onBed);
  if constexpr (std::is_same_v<Config, simulator::ExtendedScannerConfig>) {
    return std::make_unique<simulator::ExtendedScanner>(std::move(config));
  } else {
    config.identity.resolutions = swept.resolutions;
    return std::make_unique<simulator::StandardScanner>(std::move(config));
  }
}

// Noise that the mode shows without loss of its own.
Picture Noise(const pmscan::ScanMode& mode, std::uint32_t dotsPerInch) {
  Picture noise = PictureFor(mode.pixelType, kBed.width * dotsPerInch / kBasicResolution + 1,
                             kBed.height * dotsPerInch / kBasicResolution + 1);
  noise.dotsPerInch = dotsPerInch;
  return noise;
}

// Takes the lines of the one page.
class PageTaker : public pmscan::PageStore, public pmscan::RowSink {
 public:
  pmscan::RowSink& Begin(std::uint32_t, std::uint32_t, std::uint32_t) override { return *this; }
  void Write(std::span<const std::uint8_t> rows, std::uint32_t bytes, std::uint32_t) override {
    lineBytes = bytes;
    lines.insert(lines.end(), rows.begin(), rows.end());
  }
  void End(std::uint32_t) override {}
  void Finish() override {}
  std::string FileOf(std::uint32_t) const override { return {}; }
  const std::vector<pmscan::SavedFile>& Files() const override { return files; }

  std::vector<std::uint8_t> lines;
  std::uint32_t lineBytes = 0;
  std::vector<pmscan::SavedFile> files;
};

std::uint8_t CubeStep(std::uint16_t sample) {
  constexpr std::uint8_t kSteps[]{0, 1, 1, 2, 3, 4, 4, 5};
  return kSteps[sample >> 13];
}

void AppendDeep(Pixel& pixel, std::uint16_t sample, std::uint8_t bits) {
  const std::uint32_t scanned = sample >> (16 - bits);
  const std::uint32_t full = scanned << (16 - bits) | scanned >> (2 * bits - 16);
  pixel.push_back(static_cast<std::uint8_t>(full));
  pixel.push_back(static_cast<std::uint8_t>(full >> 8));
}

// What a picture of the mode shows of a place on the bed: its bytes, or a bit.
Pixel Truth(const Picture& bed, const pmscan::ScanMode& mode, std::uint8_t deepBits,
            std::uint32_t x, std::uint32_t y) {
  const std::uint16_t red = Sample(bed, x, y, 0);
  const std::uint16_t green = Sample(bed, x, y, 1);
  const std::uint16_t blue = Sample(bed, x, y, 2);
  Pixel pixel;
  switch (mode.layout) {
    case PixelLayout::kBlackWhite:
      return {static_cast<std::uint8_t>(red >> 15)};
    case PixelLayout::kGrey8:
      return {static_cast<std::uint8_t>(red >> 8)};
    case PixelLayout::kPalette:
      return {static_cast<std::uint8_t>(36 * CubeStep(red) + 6 * CubeStep(green) + CubeStep(blue))};
    case PixelLayout::kGrey16:
      AppendDeep(pixel, red, deepBits);
      return pixel;
    case PixelLayout::kRgb48:
      for (const std::uint16_t sample : {red, green, blue}) AppendDeep(pixel, sample, deepBits);
      return pixel;
    default:
      for (const std::uint16_t sample : {blue, green, red}) {
        const int byte = mode.isPacked ? (sample >> 12) * 17 : sample >> 8;
        pixel.push_back(static_cast<std::uint8_t>(byte));
      }
      return pixel;
  }
}

// A scanner, open, and what lies on its bed.
class SweptBed {
 public:
  SweptBed(const SweptScanner& scanner, const pmscan::ScanMode& mode, std::uint32_t dotsPerInch)
      : swept_(scanner), bed_(Noise(mode, dotsPerInch)), exports_(ExportsOf(module_)) {
    options_.mode = mode;
    options_.dotsPerInch = dotsPerInch;
    options_.source = *pmscan::FindScanSource("flatbed");
    scanner_ = scanner.isExtended ? Make(simulator::ExtendedScannerConfig{}, scanner, bed_)
                                  : Make(simulator::StandardScannerConfig{}, scanner, bed_);
    settings_.deviceInterface = scanner_.get();
    settings_.useDeviceInterface = 1;
    session_.emplace(exports_, settings_);
  }

  void ScanAll();

 private:
  void Scan(const PixelArea* area);
  void CheckArea(const ScanPlan& plan, const PixelArea& wanted) const;
  void CheckPixels(const ScanPlan& plan, const PageTaker& page) const;
  Pixel PictureAt(const std::uint8_t* line, std::uint32_t x) const;
  std::uint32_t BedPixels(std::uint32_t hundredths) const {
    return hundredths * options_.dotsPerInch / 100;
  }

  const SweptScanner& swept_;
  const Picture bed_;
  const ModuleUnderTest module_;
  const pmscan::ModuleExports exports_;
  Options options_;
  std::unique_ptr<simulator::Scanner> scanner_;
  ScannerSettings settings_{};
  std::optional<pmscan::Session> session_;
};

void SweptBed::ScanAll() {
  const std::uint32_t width = BedPixels(kBedWidth);
  const std::uint32_t height = BedPixels(kBedHeight);
  const std::uint32_t beyondRight = BedPixels(kBedWidth + 1) - width;
  const std::uint32_t beyondBottom = BedPixels(kBedHeight + 1) - height;
  const PixelArea odd{3, 5, 21, 11};
  const PixelArea cutRight{width - 13, 1, 13 + beyondRight, 9};
  const PixelArea cutBottom{5, 0, 18, height + beyondBottom};
  const PixelArea corner{width - 1, height - 1, 1, 1};
  for (const bool isInverted : {false, true}) {
    if (isInverted && options_.mode.layout != PixelLayout::kBlackWhite) break;
    options_.isInverted = isInverted;
    for (const bool isMirrored : {false, true}) {
      options_.isMirrored = isMirrored;
      Scan(nullptr);
      for (const PixelArea* area : {&odd, &cutRight, &cutBottom, &corner}) Scan(area);
    }
  }
  CHECK(Violations(*scanner_) == "");
}

void SweptBed::Scan(const PixelArea* area) {
  constexpr auto kPixel = pmscan::LengthUnit::kPixel;
  PixelArea wanted{0, 0, BedPixels(kBedWidth), BedPixels(kBedHeight)};
  options_.area.reset();
  if (area != nullptr) {
    wanted = *area;
    options_.area = {{double(wanted.left), kPixel},
                     {double(wanted.top), kPixel},
                     {double(wanted.width), kPixel},
                     {double(wanted.height), kPixel}};
  }
  CAPTURE(options_.isInverted);
  CAPTURE(options_.isMirrored);
  CAPTURE(wanted.left);
  CAPTURE(wanted.width);
  CAPTURE(wanted.height);
  const ScanPlan plan = PlanScan(options_, settings_);
  CheckArea(plan, wanted);
  DescribeScan(plan.asked, settings_);
  PageTaker page;
  std::vector<pmscan::SavedPage> saved;
  pmscan::BatchManners manners;
  manners.acquisition.isInterrupted = [] { return false; };
  ScanPages(exports_, {options_.source, plan.window, plan.asked.mode.outputFormat, 1, 0}, manners,
            page, saved);
  CheckPixels(plan, page);
}

void SweptBed::CheckArea(const ScanPlan& plan, const PixelArea& wanted) const {
  const PixelArea& got = plan.picture.area;
  const std::uint32_t right = std::min(wanted.left + wanted.width, BedPixels(kBedWidth));
  const std::uint32_t bottom = std::min(wanted.top + wanted.height, BedPixels(kBedHeight));
  CHECK(got.left == wanted.left);
  CHECK(got.top == wanted.top);
  CHECK(got.top + got.height == bottom);
  const bool isWhole = got.left + got.width == right;
  const bool comesByPixel = swept_.isExtended && !options_.mode.isPacked && swept_.deepBits == 12 &&
                            options_.mode.layout != PixelLayout::kBlackWhite;
  const bool hasRoom = (right - wanted.left + 7) / 8 * 8 <= BedPixels(kBedWidth);
  if (comesByPixel || hasRoom) CHECK(isWhole);
  CHECK(got.left + got.width <= right);
  CHECK(right - got.left - got.width < 8);
}

Pixel SweptBed::PictureAt(const std::uint8_t* line, std::uint32_t x) const {
  if (options_.mode.layout == PixelLayout::kBlackWhite) {
    const int bit = line[x / 8] >> (7 - x % 8) & 1;
    return {static_cast<std::uint8_t>(options_.isInverted ? 1 - bit : bit)};
  }
  const std::size_t bytes = options_.mode.isPacked ? 3 : options_.mode.bitsPerPixel / 8;
  return {line + x * bytes, line + (x + 1) * bytes};
}

void SweptBed::CheckPixels(const ScanPlan& plan, const PageTaker& page) const {
  const PixelArea& area = plan.picture.area;
  std::vector<std::uint8_t> buffer;
  const auto pixels = PicturePixels(page.lines, options_.mode, plan.sampleBits, buffer);
  const std::size_t lineBytes = pixels.size() / area.height;
  std::uint32_t wrong = 0;
  for (std::uint32_t y = 0; y < area.height; ++y) {
    for (std::uint32_t x = 0; x < area.width; ++x) {
      const std::uint32_t column = options_.isMirrored ? area.width - 1 - x : x;
      const Pixel truth =
          Truth(bed_, options_.mode, swept_.deepBits, area.left + column, area.top + y);
      wrong += PictureAt(pixels.data() + y * lineBytes, x) != truth;
    }
  }
  CHECK(page.lines.size() == std::size_t{page.lineBytes} * area.height);
  CHECK(wrong == 0);
}

}  // namespace

void Sweep(const SweptScanner& scanner) {
  CAPTURE(scanner.level);
  for (const pmscan::ScanMode& mode : pmscan::kScanModes) {
    if (scanner.isExtended && mode.layout == PixelLayout::kPalette) continue;
    CAPTURE(mode.name);
    for (const std::uint32_t resolution : scanner.resolutions) {
      CAPTURE(resolution);
      SweptBed(scanner, mode, resolution).ScanAll();
    }
  }
}

}  // namespace pmddb832::tests
