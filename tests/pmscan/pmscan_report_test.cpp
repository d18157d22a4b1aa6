#include <doctest/doctest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "pmscan/report/report.h"

namespace {

pmddb832::ScannerSettings FeederScanner() {
  pmddb832::ScannerSettings settings{};
  std::memcpy(settings.commandLevelText, "B8", 3);
  std::memcpy(settings.modelName, "QM2700", 7);
  std::memcpy(settings.productNameReply, "SCANNER QM-2700 ", 17);
  settings.scanInfoVariant = 3;
  settings.docFeedOption = 0;
  settings.bedWidth = 850;
  settings.bedHeight = 1170;
  settings.optionWidth = 850;
  settings.optionHeight = 1400;
  settings.minResolutionCopy = 50;
  settings.maxResolutionCopy = 1200;
  settings.baseResolution = 600;
  settings.halftoneInfo = 10;
  return settings;
}

std::uint32_t StatusOf(std::uint32_t option) {
  return option == 0 ? 13 : 0;
}
std::uint32_t PaperSize(std::uint32_t option, std::uint32_t* width, std::uint32_t* height) {
  *width = 10200;
  *height = option == 0 ? 16800 : 14040;
  return 0;
}

TEST_CASE("pmscan: the scanner's report tells what is fitted, how large it is and how it is") {
  pmscan::ModuleExports module;
  module.getOptionStatus = &StatusOf;
  module.getScanPaperSize = &PaperSize;
  pmddb832::ScannerSettings settings = FeederScanner();
  CHECK(pmscan::ScannerReport(pmscan::AskScanner(module, settings)) ==
        "Model        QM2700 (SCANNER QM-2700)\n"
        "Product      SCANNER QM-2700\n"
        "Level        B8, extended commands\n"
        "Resolutions  50 to 1200 dpi, basic 600 dpi\n"
        "Halftones    10\n"
        "Flatbed      8.50 x 11.70 in (215.9 x 297.2 mm), 10200 x 14040 pixels at the highest "
        "resolution; ready\n"
        "Feeder       8.50 x 14.00 in (215.9 x 355.6 mm), 10200 x 16800 pixels at the highest "
        "resolution; 13: the document feeder is empty\n"
        "Transparency not fitted\n");
  CHECK(settings.scanSource == 0);
}

std::string ReportOf(const pmscan::ScanOutcome& outcome) {
  const pmscan::ScanRequest request{
      *pmscan::FindScanMode("grey"), 300, {0, 0, 2550, 3510}, false, false};
  return ScanReport(pmscan::ReadFacts(FeederScanner()), *pmscan::FindScanSource("feeder"), request,
                    outcome);
}

TEST_CASE("pmscan: the report of a scan tells what was scanned and where it is") {
  const pmscan::ScanOutcome outcome{{{1, "page.png", 3510, 3510, 1}},
                                    {{"page.png", 12345}},
                                    "PNG",
                                    pmscan::BatchEnd::kAllPages,
                                    1.25};
  CHECK(ReportOf(outcome) ==
        "Model        QM2700 (SCANNER QM-2700)\n"
        "Level        B8, extended commands\n"
        "Source       document feeder\n"
        "Mode         grey, 8 bits\n"
        "Resolution   300 dpi\n"
        "Pixels       2550 x 3510\n"
        "Size         8.50 x 11.70 in (215.9 x 297.2 mm)\n"
        "File         page.png, PNG, 12345 bytes\n"
        "Time         1.2 s\n");
}

TEST_CASE("pmscan: the report of a batch lists its files, and which page is a part only") {
  const pmscan::ScanOutcome outcome{{{1, "1.png", 3510, 3510, 1}, {2, "2.png", 99, 3510, 1}},
                                    {{"1.png", 12345}, {"2.png", 678}},
                                    "PNG",
                                    std::nullopt,
                                    1.25};
  CHECK(
      ReportOf(outcome).ends_with("Pages        2\n"
                                  "File         1.png, PNG, 12345 bytes\n"
                                  "File         2.png, PNG, 99 of 3510 lines, 678 bytes\n"
                                  "Time         1.2 s\n"));
}

TEST_CASE("pmscan: the report of a file of several pages counts them") {
  const pmscan::ScanOutcome outcome{{{1, "a.tif", 3510, 3510, 1}, {2, "a.tif", 99, 3510, 1}},
                                    {{"a.tif", 12345}},
                                    "TIFF",
                                    pmscan::BatchEnd::kFeederEmpty,
                                    1.25};
  CHECK(ReportOf(outcome).ends_with(
      "Pages        2; the feeder is empty\n"
      "File         a.tif, TIFF, 2 pages, the last one 99 of 3510 lines, 12345 bytes\n"
      "Time         1.2 s\n"));
}

TEST_CASE("pmscan: a scanner whose model is not known goes by its product name") {
  pmddb832::ScannerSettings settings = FeederScanner();
  std::memcpy(settings.modelName, "ORVAN  ", 8);
  CHECK(pmscan::ModelText(pmscan::ReadFacts(settings)) == "SCANNER QM-2700");
  std::fill(std::begin(settings.productNameReply), std::end(settings.productNameReply), '\0');
  CHECK(pmscan::ModelText(pmscan::ReadFacts(settings)) == "unknown");
}

}  // namespace
