#include <doctest/doctest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "pmscan/scan/acquisition.h"
#include "pmscan/scan/scan_mode.h"
#include "pmscan/scan/session.h"
#include "tests/pmscan/refusal.h"

namespace {

using pmscan::tests::CodeOf;

// A module by script; its functions carry no context, so there is one at a time.
struct FakeModule {
  std::uint32_t heightLines = 10;
  std::uint32_t lineBytes = 8;
  std::uint32_t fillingBytes = 0;  // of a line, which the module leaves alone
  std::uint32_t setupStatus = pmddb832::kAcquisitionGoOn;
  std::uint32_t warmUpPolls = 0;        // how many first bands fail with 43
  std::uint32_t errorAtLine = ~0u;      // from this line on, bands fail with 9
  std::uint32_t linesOfFailedBand = 0;  // that it writes nevertheless
  std::uint32_t linesPerBand = 4;
  std::uint32_t openResult = 1;
  std::uint32_t enableResult = 1;
  std::uint32_t status = 0;
  std::uint32_t error = 0;
  std::uint32_t linesDone = 0;
  std::vector<std::string> calls;
};

FakeModule* fake = nullptr;

std::uint32_t Open(pmddb832::ScannerSettings*) {
  return fake->openResult;
}
void Close() {
  fake->calls.push_back("close");
}
void Init(std::uint32_t, pmddb832::ProgressCallback, pmddb832::AcquisitionSetup* setup) {
  *setup = {fake->setupStatus, 0, fake->lineBytes, 0, fake->lineBytes, fake->heightLines};
}
// The number of the line in each of its bytes but those that fill it up.
void Write(std::uint8_t* buffer, std::uint32_t lines) {
  for (std::uint32_t i = 0; i < lines; ++i) {
    std::fill_n(buffer + i * fake->lineBytes, fake->lineBytes - fake->fillingBytes,
                static_cast<std::uint8_t>(fake->linesDone + i));
  }
}
void Acquire(std::uint8_t* buffer, std::uint32_t bytes, pmddb832::AcquisitionBand* band) {
  fake->calls.push_back("acquire");
  *band = {pmddb832::kAcquisitionFailed, 0, 0, 0, 0};
  if (fake->warmUpPolls > 0) {
    --fake->warmUpPolls;
    fake->error = pmscan::kWarmingUp;
    return;
  }
  if (fake->linesDone >= fake->errorAtLine) {
    fake->error = pmscan::kTransferFailed;
    band->lines = fake->linesPerBand;
    Write(buffer, fake->linesOfFailedBand);
    return;
  }
  const std::uint32_t lines =
      std::min({fake->linesPerBand, fake->heightLines - fake->linesDone, bytes / fake->lineBytes});
  Write(buffer, lines);
  fake->linesDone += lines;
  const std::uint32_t done = fake->linesDone == fake->heightLines ? 1 : 0;
  *band = {pmddb832::kAcquisitionGoOn, 0, done, lines, lines * fake->lineBytes};
}
void Abort() {
  fake->calls.push_back("abort");
}
std::uint32_t OptionStatus(std::uint32_t) {
  return fake->status;
}
std::uint32_t Enable(std::uint32_t value) {
  fake->calls.push_back("enable " + std::to_string(value));
  return fake->enableResult;
}
std::uint32_t PaperSize(std::uint32_t, std::uint32_t*, std::uint32_t*) {
  return 0;
}
std::uint32_t Error() {
  return fake->error;
}

constexpr pmscan::ModuleExports kModule{&Open,         &Close,  &Init,      &Acquire, &Abort,
                                        &OptionStatus, &Enable, &PaperSize, &Error};

struct Rows : pmscan::RowSink {
  void Write(std::span<const std::uint8_t> rows, std::uint32_t lineBytes,
             std::uint32_t lines) override {
    if (isFull) throw pmscan::Failure(pmscan::kOutputFile);
    CHECK(rows.size() == std::size_t{lineBytes} * lines);
    for (std::uint32_t i = 0; i < lines; ++i) {
      firstBytes.push_back(rows[i * lineBytes]);
      lastBytes.push_back(rows[(i + 1) * lineBytes - 1]);
    }
  }
  std::vector<std::uint8_t> firstBytes;
  std::vector<std::uint8_t> lastBytes;
  bool isFull = false;
};

// One scan of the fake module.
struct Fixture {
  Fixture() { fake = &module; }

  std::uint32_t Scan() {
    manners.waitForWarmUp = [this](std::uint32_t trial) { waits.push_back(trial); };
    manners.isInterrupted = [this] { return module.linesDone >= interruptAtLine; };
    return CodeOf([this] {
      const auto setup = pmscan::PrepareAcquisition(kModule, pmscan::kRedFirst, nullptr);
      pmscan::AcquirePicture(kModule, setup, manners, rows);
    });
  }
  std::size_t Count(const char* call) const {
    return static_cast<std::size_t>(std::count(module.calls.begin(), module.calls.end(), call));
  }

  FakeModule module;
  Rows rows;
  pmscan::AcquisitionManners manners;
  std::vector<std::uint32_t> waits;
  std::uint32_t interruptAtLine = ~0u;
};

TEST_CASE_FIXTURE(Fixture, "pmscan: every line of every band reaches the picture in order") {
  CHECK(Scan() == 0);
  CHECK(rows.firstBytes == std::vector<std::uint8_t>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  CHECK(Count("acquire") == 3);
  CHECK(Count("abort") == 0);
}

TEST_CASE_FIXTURE(Fixture, "pmscan: a band has as many lines as its buffer holds") {
  module.lineBytes = 100000;
  module.linesPerBand = 65535;
  CHECK(Scan() == 0);
  CHECK(Count("acquire") == 5);  // two lines at a time
}

TEST_CASE_FIXTURE(Fixture, "pmscan: a line longer than a usual band is a band of its own") {
  module.lineBytes = 400000;
  module.linesPerBand = 65535;
  CHECK(Scan() == 0);
  CHECK(Count("acquire") == 10);
}

TEST_CASE_FIXTURE(Fixture, "pmscan: a scanner that warms up is asked again, as often as allowed") {
  manners.warmUpTries = 3;
  module.warmUpPolls = 3;
  CHECK(Scan() == 0);
  CHECK(waits == std::vector<std::uint32_t>{1, 2, 3});
  CHECK(rows.firstBytes.size() == 10);
}

TEST_CASE_FIXTURE(Fixture, "pmscan: a scanner that does not stop warming up is given up") {
  manners.warmUpTries = 3;
  module.warmUpPolls = 4;
  CHECK(Scan() == pmscan::kWarmingUp);
  CHECK(waits.size() == 3);
  CHECK(Count("abort") == 0);
}

TEST_CASE_FIXTURE(Fixture, "pmscan: a failure in mid-scan ends it with the module's code") {
  module.errorAtLine = 4;
  CHECK(Scan() == pmscan::kTransferFailed);
  CHECK(Count("abort") == 0);
}

TEST_CASE_FIXTURE(Fixture, "pmscan: the lines that came of a band that failed are handed on") {
  for (const std::uint32_t lineBytes : {1u, 4u, 8u, 23u}) {
    for (const std::uint32_t lines : {0u, 1u, 3u}) {
      CAPTURE(lineBytes);
      CAPTURE(lines);
      module = {};
      rows = {};
      module.lineBytes = lineBytes;
      module.errorAtLine = 4;
      module.linesOfFailedBand = lines;
      CHECK(Scan() == pmscan::kTransferFailed);
      REQUIRE(rows.firstBytes.size() == 4 + lines);
      for (std::size_t line = 0; line < rows.firstBytes.size(); ++line) {
        CHECK(rows.firstBytes[line] == line);
      }
    }
  }
}

TEST_CASE_FIXTURE(Fixture, "pmscan: what fills a line up to four bytes is 0") {
  module.fillingBytes = 3;
  CHECK(Scan() == 0);
  CHECK(rows.lastBytes == std::vector<std::uint8_t>(10, 0));
}

TEST_CASE_FIXTURE(Fixture, "pmscan: a scan that cannot be prepared is never begun") {
  module.setupStatus = pmddb832::kAcquisitionFailed;
  module.error = 35;
  CHECK(Scan() == 35);
  CHECK(Count("acquire") == 0);
}

TEST_CASE_FIXTURE(Fixture, "pmscan: an interrupted scan is cancelled") {
  interruptAtLine = 4;
  CHECK(Scan() == pmscan::kInterrupted);
  CHECK(rows.firstBytes.size() == 4);
  CHECK(Count("abort") == 1);
}

TEST_CASE_FIXTURE(Fixture, "pmscan: an interruption before the first band cancels nothing") {
  interruptAtLine = 0;
  CHECK(Scan() == pmscan::kInterrupted);
  CHECK(Count("abort") == 0);
}

TEST_CASE_FIXTURE(Fixture, "pmscan: a scan whose picture cannot be written is cancelled") {
  rows.isFull = true;
  CHECK(Scan() == pmscan::kOutputFile);
  CHECK(Count("abort") == 1);
}

TEST_CASE_FIXTURE(Fixture, "pmscan: a band without lines ends the scan instead of going round") {
  module.linesPerBand = 0;
  CHECK(Scan() == pmscan::kTransferFailed);
  CHECK(Count("acquire") == 1);
}

TEST_CASE_FIXTURE(Fixture, "pmscan: a scanner that does not open is not closed") {
  module.openResult = 0;
  module.error = 7;
  pmddb832::ScannerSettings settings{};
  CHECK(CodeOf([&] { pmscan::Session(kModule, settings); }) == 7);
  CHECK(Count("close") == 0);
}

TEST_CASE_FIXTURE(Fixture, "pmscan: the option unit is on for its scan only") {
  pmddb832::ScannerSettings settings{};
  {
    pmscan::Session session(kModule, settings);
    session.Select(*pmscan::FindScanSource("feeder"));
    CHECK(settings.scanSource == 1);
  }
  CHECK(module.calls == std::vector<std::string>{"enable 1", "enable 0", "close"});
}

TEST_CASE_FIXTURE(Fixture, "pmscan: a scan from the flatbed leaves the option unit alone") {
  pmddb832::ScannerSettings settings{};
  {
    pmscan::Session session(kModule, settings);
    session.Select(*pmscan::FindScanSource("flatbed"));
    CHECK(settings.scanSource == 0);
  }
  CHECK(module.calls == std::vector<std::string>{"close"});
}

TEST_CASE_FIXTURE(Fixture, "pmscan: a source that does not switch on is a failure") {
  module.enableResult = 0;
  module.error = 9;
  pmddb832::ScannerSettings settings{};
  pmscan::Session session(kModule, settings);
  CHECK(CodeOf([&] { session.Select(*pmscan::FindScanSource("feeder")); }) == 9);
}

}  // namespace
