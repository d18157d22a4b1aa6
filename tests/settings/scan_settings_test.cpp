#include <doctest/doctest.h>

#include <functional>

#include "tests/pmscan/refusal.h"
#include "tests/scans/whole_scan.h"
#include "tests/settings/pmscan_desk.h"
#include "tests/settings/tone_truth.h"

// What pmscan writes of a scan with settings is what the rules make of the document, pixel by
// pixel: each setting by itself and some together, on every level that has it.

using namespace pmddb832::tests;
using pmscan::ImageSettings;
using pmscan::PixelArea;
using pmscan::PixelLayout;

namespace {

using Change = std::function<void(ImageSettings&)>;

pmscan::GammaTables OddTables() {
  pmscan::GammaTables tables;
  for (std::size_t place = 0; place < 256; ++place) {
    tables.red[place] = static_cast<std::uint8_t>(255 - place);
    tables.green[place] = static_cast<std::uint8_t>(place * place / 255);
    tables.blue[place] = static_cast<std::uint8_t>(place / 2 + 17);
  }
  return tables;
}

constexpr pmscan::ColorMatrix kOddMatrix{40, 0xFC, 0xFC, 5, 20, 7, 0, 0xF0, 48};

std::vector<Change> ChangesOfLineArt() {
  std::vector<Change> changes;
  for (const int threshold : {1, 97, 255}) {
    changes.emplace_back(
        [=](ImageSettings& image) { image.threshold = static_cast<std::uint8_t>(threshold); });
  }
  for (std::uint8_t row = 1; row <= 9; ++row) {
    changes.emplace_back([=](ImageSettings& image) { image.halftone = row; });
  }
  changes.emplace_back([](ImageSettings& image) {
    image.halftone = 5;
    image.brightness = 1;
    image.sharpness = -1;
  });
  return changes;
}

// With gamma tables no brightness is sent: they come while the scanner still has none.
std::vector<Change> ChangesOfAll() {
  std::vector<Change> changes{[](ImageSettings&) {},
                              [](ImageSettings& image) { image.colorMatrix = kOddMatrix; },
                              [](ImageSettings& image) { image.gammaTables = OddTables(); },
                              [](ImageSettings& image) {
                                image.gammaTables = OddTables();
                                image.gammaTables->green = image.gammaTables->blue =
                                    image.gammaTables->red;
                              },
                              [](ImageSettings& image) { image.brightness = -3; },
                              [](ImageSettings& image) { image.brightness = 2; },
                              [](ImageSettings& image) {
                                image.colorMatrix = kOddMatrix;
                                image.sharpness = 1;
                                image.gamma = 220;
                                image.brightness = -1;
                              }};
  for (const int sharpness : {-2, -1, 1, 2}) {
    changes.emplace_back([=](ImageSettings& image) { image.sharpness = sharpness; });
  }
  for (const std::uint16_t gamma : std::vector<std::uint16_t>{220, 250, 280, 300}) {
    changes.emplace_back([=](ImageSettings& image) { image.gamma = gamma; });
  }
  return changes;
}

std::vector<Change> ChangesOfOneChannel() {
  std::vector<Change> changes;
  for (const std::uint16_t channel : std::vector<std::uint16_t>{1, 2, 3}) {
    changes.emplace_back([=](ImageSettings& image) { image.channel = channel; });
    changes.emplace_back([=](ImageSettings& image) {
      image.channel = channel;
      image.gammaTables = OddTables();
    });
  }
  return changes;
}

simulator::Picture Document(std::uint32_t dotsPerInch) {
  simulator::Picture document = ColourPicture(88 * dotsPerInch / 100, 51 * dotsPerInch / 100);
  document.dotsPerInch = dotsPerInch;
  return document;
}

// A sample of 12 bits, filled up to 16.
std::uint32_t Deep(std::uint32_t sample) {
  return (sample & 0xFFF0u) | sample >> 12;
}

// What the picture shows of a place on the document; of line art 0 or 1.
std::vector<std::uint32_t> Truth(const ToneTruth& truth, PixelLayout layout, std::uint32_t x,
                                 std::uint32_t y) {
  if (layout == PixelLayout::kBlackWhite) return {truth.IsWhite(x, y) ? 1u : 0u};
  if (layout == PixelLayout::kGrey8) return {truth.Grey(x, y) / 256u};
  if (layout == PixelLayout::kGrey16) return {Deep(truth.Grey(x, y))};
  const auto [red, green, blue] = truth.Colour(x, y);
  if (layout == PixelLayout::kRgb48) return {Deep(red), Deep(green), Deep(blue)};
  return {blue / 256u, green / 256u, red / 256u};
}

std::vector<std::uint32_t> Written(const WrittenPicture& picture, PixelLayout layout,
                                   std::uint32_t x, std::uint32_t y) {
  const std::uint8_t* const line = picture.pixels.data() + y * picture.lineBytes;
  if (layout == PixelLayout::kBlackWhite) return {line[x / 8] >> (7 - x % 8) & 1u};
  if (layout == PixelLayout::kGrey8) return {line[x]};
  const std::size_t samples = layout == PixelLayout::kGrey16 ? 1 : 3;
  std::vector<std::uint32_t> pixel;
  for (std::size_t i = 0; i < samples; ++i) {
    const std::size_t place = x * samples + i;
    const bool isDeep = IsDeep(layout);
    pixel.push_back(isDeep ? line[2 * place] | line[2 * place + 1] * 256u : line[place]);
  }
  return pixel;
}

void CheckShows(const WrittenPicture& picture, const pmscan::Options& options,
                const simulator::Picture& document) {
  const ToneTruth truth(document, options.image);
  const PixelArea& area = picture.plan.picture.area;
  const PixelLayout layout = options.mode.layout;
  std::uint32_t wrong = 0;
  for (std::uint32_t y = 0; y < area.height; ++y) {
    for (std::uint32_t x = 0; x < area.width; ++x) {
      const std::uint32_t column = options.isMirrored ? area.width - 1 - x : x;
      wrong +=
          Written(picture, layout, x, y) != Truth(truth, layout, area.left + column, area.top + y);
    }
  }
  CHECK(wrong == 0);
}

// Scans areas with odd edges, mirrored and not, with each of the changes that the scanner can do.
void CheckChanges(const TestedScanner& tested, const char* mode,
                  const std::vector<Change>& changes) {
  CAPTURE(tested.level);
  CAPTURE(mode);
  const simulator::Picture document = Document(150);
  PmscanDesk desk(tested, document);
  desk.SetMode(mode);
  for (std::size_t number = 0; number < changes.size(); ++number) {
    CAPTURE(number);
    desk.options.image = {};
    changes[number](desk.options.image);
    for (const PixelArea& area : {PixelArea{0, 0, 23, 9}, PixelArea{101, 5, 28, 13}}) {
      desk.SetArea(area);
      desk.options.isMirrored = !desk.options.isMirrored;
      if (pmscan::tests::CodeOf([&] { PlanScan(desk.options, desk.settings); }) == 0) {
        CheckShows(desk.Scan(), desk.options, document);
      }
    }
  }
  CHECK(Violations(*desk.scanner) == "");
  CHECK(desk.scanner->Refusals().empty());
}

void CheckModes(const TestedScanner& tested) {
  CheckChanges(tested, "lineart", ChangesOfLineArt());
  for (const char* mode : {"lineart", "grey", "deep-grey", "colour", "deep-colour"}) {
    CheckChanges(tested, mode, ChangesOfAll());
  }
  for (const char* mode : {"lineart", "grey", "deep-grey"}) {
    CheckChanges(tested, mode, ChangesOfOneChannel());
  }
}

std::uint8_t PreviewTone(std::uint32_t grey) {
  return static_cast<std::uint8_t>(grey == 255 ? 234 : grey - grey / 11);
}

}  // namespace

TEST_CASE("settings: pictures of scanners with extended commands follow every setting") {
  for (const char* level : {"B3", "B4", "B8"}) CheckModes({level, true});
}

TEST_CASE("settings: pictures of scanners with standard commands follow the settings they have") {
  for (const char* level : {"B3", "B4", "A5", "B8"}) CheckModes({level, false});
}

TEST_CASE("settings: a zoomed picture shows the bed at so much of its resolution") {
  for (const bool isExtended : {false, true}) {
    for (const std::uint16_t zoom : std::vector<std::uint16_t>{50, 102, 200}) {
      CAPTURE(zoom);
      const simulator::Picture document = Document(150u * zoom / 100);
      PmscanDesk desk({"B8", isExtended}, document);
      desk.options.image.zoom = zoom;
      desk.SetArea({7, 3, 21, 11});
      const WrittenPicture picture = desk.Scan();
      CHECK(picture.plan.picture.area.width == 21);
      CheckShows(picture, desk.options, document);
      desk.options.area.reset();
      CheckShows(desk.Scan(), desk.options, document);
      CHECK(Violations(*desk.scanner) == "");
    }
  }
}

TEST_CASE("settings: a preview is as coarse as the scanner can, and has the module's grey tones") {
  for (const bool isExtended : {false, true}) {
    const simulator::Picture document = Document(50);
    PmscanDesk desk({"B8", isExtended}, document);
    desk.options.image.isPreview = true;
    desk.options.dotsPerInch = 0;
    const WrittenPicture picture = desk.Scan();
    CHECK(picture.plan.picture.dotsPerInch == 50);
    const ToneTruth truth(document, desk.options.image);
    std::uint32_t wrong = 0;
    for (std::uint32_t y = 0; y < 25; ++y) {
      for (std::uint32_t x = 0; x < 40; ++x) {
        wrong += picture.pixels[y * picture.lineBytes + x] != PreviewTone(truth.Grey(x, y) / 256u);
      }
    }
    CHECK(wrong == 0);
  }
}

TEST_CASE("settings: white is 65535 in deep pictures, whatever the module takes for the bits") {
  const std::string product = "SCANNER RV-3100 ";
  const simulator::Picture white{129, 75, 150, std::vector<std::uint16_t>(129 * 75 * 3, 0xFFFF)};
  for (const bool isListed : {true, false}) {
    CAPTURE(isListed);
    for (const char* mode : {"deep-grey", "deep-colour"}) {
      PmscanDesk desk({"B7", true, 0, product, isListed ? "RV3100" : "XYZ"}, white);
      desk.SetMode(mode);
      const WrittenPicture picture = desk.Scan();
      CHECK(picture.plan.picture.area.width == (isListed ? 129 : 128));
      CHECK(picture.pixels == std::vector<std::uint8_t>(picture.pixels.size(), 0xFF));
    }
  }
}

// The module takes the width of the bed in whole groups of eight pixels then.
TEST_CASE("settings: at the highest resolutions a picture ends with the bed's last whole group") {
  const simulator::Picture document = Document(1200);
  for (const std::uint16_t zoom : std::vector<std::uint16_t>{100, 200}) {
    PmscanDesk desk({"B8", false}, document);
    desk.options.dotsPerInch = 120000u / zoom;
    desk.options.image.zoom = zoom;
    desk.SetArea({1021, 5, 23, 7});
    const WrittenPicture picture = desk.Scan();
    CHECK(picture.plan.picture.area.width == 19);
    CheckShows(picture, desk.options, document);
    desk.SetArea({1040, 5, 4, 7});
    CHECK(pmscan::tests::CodeOf([&] { desk.Scan(); }) == pmscan::kUnsupported);
    CHECK(Violations(*desk.scanner) == "");
  }
}
