#include <doctest/doctest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>

#include "simulator/catalog.h"
#include "tests/extended_scan.h"
#include "tests/faulty_device.h"
#include "tests/meant_leak.h"

using namespace pmddb832;
using namespace pmddb832::tests;

namespace {

// A scan that is repeated with every fault at every place.
struct Subject {
  const char* name;     // of the simulated scanner
  std::uint8_t source;  // ScannerSettings::scanSource
};

constexpr std::array kSubjects{Subject{"extended", 0}, Subject{"extended:RV7000H+pages=9", 1},
                               Subject{"standard", 0}};

// The codes that a host is promised (docs/error-codes.md).
constexpr std::array<std::uint32_t, 14> kDocumentedCodes{0,  1,  7,  9,  10, 13, 14,
                                                         15, 16, 22, 31, 34, 35, 43};

struct Outcome {
  bool opened = false;
  ScannedImage image;
  std::vector<std::uint32_t> transfers;
};

// Opens a fresh scanner through the host's module, scans 40 lines of it, and closes it.
Outcome Scan(WholeScan& host, const Subject& subject, std::optional<Fault> fault) {
  const auto scanner = simulator::MakeScanner(subject.name, ColourPicture(400, 60));
  FaultyDevice device(*scanner, fault);
  host.settings.deviceInterface = &device;
  host.settings.scanSource = 0;
  Outcome outcome;
  {
    const MeantLeak formerCommandSet;
    outcome.opened = host.Open();
  }
  host.settings.scanSource = subject.source;
  host.settings.resolution = 300;
  host.SetArea(0, 0, 400, 40);
  outcome.image = host.Acquire(5, 1200 * 16);
  host.module->AbortScan();
  host.module->CloseScanner();
  host.settings.deviceInterface = nullptr;
  outcome.transfers = device.Transfers();
  return outcome;
}

// Runs the scan with one fault, and a sound one behind it.
void CheckFault(WholeScan& host, const Subject& subject, const Outcome& sound, const Fault& fault) {
  CAPTURE(static_cast<int>(fault.kind));
  CAPTURE(fault.transfer);
  CAPTURE(fault.delivered);
  const Outcome faulty = Scan(host, subject, fault);
  const bool documented = std::find(kDocumentedCodes.begin(), kDocumentedCodes.end(),
                                    faulty.image.error) != kDocumentedCodes.end();
  CHECK(documented);
  CHECK(faulty.transfers.size() < 2 * sound.transfers.size() + 20);
  CHECK(Scan(host, subject, std::nullopt).image.rows == sound.image.rows);
}

void ForEverySubject(const std::function<void(WholeScan&, const Subject&, const Outcome&)>& check) {
  for (const Subject& subject : kSubjects) {
    CAPTURE(subject.name);
    const auto unused = simulator::MakeScanner(subject.name, ColourPicture(8, 8));
    WholeScan host(*unused);
    const Outcome sound = Scan(host, subject, std::nullopt);
    REQUIRE(sound.opened);
    REQUIRE(sound.image.rows.size() == 40);
    check(host, subject, sound);
  }
}

void CheckFaultEverywhere(FaultKind kind) {
  ForEverySubject([kind](WholeScan& host, const Subject& subject, const Outcome& sound) {
    for (std::size_t transfer = 0; transfer < sound.transfers.size(); ++transfer) {
      CheckFault(host, subject, sound, {kind, transfer});
    }
  });
}

}  // namespace

TEST_CASE("a transfer that fails, wherever it does, harms neither this scan nor the next") {
  CheckFaultEverywhere(FaultKind::kFails);
}

TEST_CASE("a device that is gone from any transfer on harms neither this scan nor the next") {
  CheckFaultEverywhere(FaultKind::kGone);
}

TEST_CASE("a NAK in the place of any ACK harms neither this scan nor the next") {
  CheckFaultEverywhere(FaultKind::kNak);
}

TEST_CASE("a wrong first byte of any reply harms neither this scan nor the next") {
  CheckFaultEverywhere(FaultKind::kWrongFirstByte);
}

TEST_CASE("a reply cut to any shorter length harms neither this scan nor the next") {
  ForEverySubject([](WholeScan& host, const Subject& subject, const Outcome& sound) {
    for (std::size_t transfer = 0; transfer < sound.transfers.size(); ++transfer) {
      const std::uint32_t wanted = sound.transfers[transfer];
      const std::uint32_t step = wanted > 100 ? wanted / 7 : 1;
      for (std::uint32_t delivered = 0; delivered < wanted; delivered += step) {
        CheckFault(host, subject, sound, {FaultKind::kCutShort, transfer, delivered});
      }
    }
  });
}
