#include <doctest/doctest.h>

#include <nlohmann/json.hpp>

#include "pmscan/maintenance/maintenance.h"
#include "tests/pmscan/refusal.h"
#include "tests/safety/meant_leak.h"
#include "tests/scans/whole_scan.h"
#include "tests/settings/pmscan_desk.h"

// Paper that stays in the feeder, and what pmscan asks of a scanner besides scans.

using namespace pmddb832::tests;

namespace {

constexpr std::uint8_t kFeeder = 0x20;  // one that takes several variants

simulator::Picture Page() {
  simulator::Picture page = ColourPicture(130, 76);
  page.dotsPerInch = 150;
  return page;
}

// A desk whose session is over: the commands open their own.
struct ClosedDesk : MeantLeak, PmscanDesk {
  explicit ClosedDesk(const TestedScanner& tested) : PmscanDesk(tested, Page()) { session.reset(); }
  std::size_t RefusalsAfter(std::string (*command)(const pmscan::ModuleExports&,
                                                   pmddb832::ScannerSettings&, pmscan::Json&)) {
    pmscan::Json report;
    command(exports, settings, report);
    return scanner->Refusals().size();
  }
};

std::string RefusalOfFocus(PmscanDesk& desk, const pmscan::Focus& focus) {
  pmscan::Json report;
  return pmscan::tests::RefusalOf(
      [&] { FocusScanner(desk.exports, desk.settings, focus, report); });
}

}  // namespace

TEST_CASE("settings: paper stays in the feeder when that is wanted, else it is thrown out") {
  for (const bool isExtended : {false, true}) {
    for (const bool keeps : {false, true}) {
      PmscanDesk desk({"B8", isExtended, kFeeder}, Page());
      desk.options.source = *pmscan::FindScanSource("feeder");
      desk.options.image.keepsPaper = keeps;
      desk.Scan();
      CHECK(desk.scanner->Ejects() == (keeps ? 0 : 1));
      CHECK(Violations(*desk.scanner) == "");
    }
  }
}

TEST_CASE("settings: a page that was kept is thrown out by eject, and not before") {
  for (const bool isExtended : {false, true}) {
    const MeantLeak commandSets;
    PmscanDesk desk({"B8", isExtended, kFeeder}, Page());
    desk.options.source = *pmscan::FindScanSource("feeder");
    desk.options.image.keepsPaper = true;
    desk.Scan();
    desk.session.reset();
    CHECK(desk.scanner->Ejects() == 0);
    pmscan::Json report;
    EjectPage(desk.exports, desk.settings, report);
    CHECK(desk.scanner->Ejects() == 1);
    CHECK(desk.scanner->Refusals().empty());
    CHECK(Violations(*desk.scanner) == "");
  }
}

TEST_CASE("settings: feed draws the page in, and eject throws it out unscanned") {
  for (const bool isExtended : {false, true}) {
    ClosedDesk desk({"B8", isExtended, kFeeder});
    CHECK(desk.RefusalsAfter(&pmscan::FeedPage) == 0);
    CHECK(desk.RefusalsAfter(&pmscan::EjectPage) == 0);
    CHECK(desk.scanner->Ejects() == 1);
    pmscan::Json report;
    CHECK(pmscan::tests::CodeOf([&] { FeedPage(desk.exports, desk.settings, report); }) == 13);
    CHECK(report["level"] == "B8");
    CHECK(Violations(*desk.scanner) == "");
  }
}

TEST_CASE("settings: a scanner without a feeder is told so") {
  ClosedDesk desk({"B8", true});
  for (const auto command : {&pmscan::FeedPage, &pmscan::EjectPage}) {
    pmscan::Json report;
    CHECK(pmscan::tests::CodeOf([&] { command(desk.exports, desk.settings, report); }) ==
          pmscan::kUnsupported);
  }
}

TEST_CASE("settings: reset is acknowledged") {
  ClosedDesk desk({"B5", false});
  CHECK(desk.RefusalsAfter(&pmscan::ResetScanner) == 0);
}

TEST_CASE("settings: focus goes to a position on both sides of the glass") {
  for (const bool isExtended : {false, true}) {
    ClosedDesk desk({"B8", isExtended});
    for (const std::int32_t position : {-64, -1, 0, 7, 155}) {
      pmscan::Json report;
      FocusScanner(desk.exports, desk.settings, {false, position}, report);
      CHECK(report["focus"] == position);
      CHECK(desk.scanner->FocusPosition() == position + 64);
    }
    CHECK(Violations(*desk.scanner) == "");
  }
}

TEST_CASE("settings: only level B8 focuses") {
  for (const bool isExtended : {false, true}) {
    ClosedDesk desk({"B7", isExtended});
    CHECK(
        RefusalOfFocus(desk, {false, 7}) ==
        "65 Only scanners of level B8 can focus, and this one has level B7: name one that can with "
        "--device.");
  }
}

TEST_CASE("settings: a bed of level B3 with extended commands is scanned where --area says") {
  PmscanDesk desk({"B3", true}, Page());
  CHECK(std::string(desk.settings.commandLevelText) == "B3");
  CHECK(desk.settings.halftoneInfo == 4);
  desk.SetArea({5, 3, 21, 11});
  const WrittenPicture picture = desk.Scan();
  CHECK(picture.pixels.size() == picture.lineBytes * 11);
  CHECK(Violations(*desk.scanner) == "");
}
