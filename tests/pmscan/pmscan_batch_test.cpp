#include <doctest/doctest.h>

#include <algorithm>
#include <deque>
#include <string>
#include <vector>

#include "pmscan/scan/batch.h"
#include "pmscan/scan/scan_mode.h"
#include "tests/pmscan/refusal.h"

namespace {

using pmscan::BatchEnd;

constexpr std::uint32_t kHeight = 4;  // lines of a page; a band has two

// A feeder by script; the functions carry no context, so there is one at a time.
struct FakeFeeder {
  std::deque<std::uint32_t> statuses;  // of the feeder, one a question; 0 when they are used up
  std::uint32_t failsAtLine = ~0u;     // all pages counted together
  std::uint32_t failure = 0;
  std::uint32_t linesDone = 0;
  std::uint32_t aborts = 0;
};

FakeFeeder* fake = nullptr;

std::uint32_t Status(std::uint32_t) {
  if (fake->statuses.empty()) return 0;
  const std::uint32_t status = fake->statuses.front();
  fake->statuses.pop_front();
  return status;
}
void Init(std::uint32_t, pmddb832::ProgressCallback, pmddb832::AcquisitionSetup* setup) {
  *setup = {pmddb832::kAcquisitionGoOn, 0, 8, 0, 8, kHeight};
}
void Acquire(std::uint8_t*, std::uint32_t, pmddb832::AcquisitionBand* band) {
  if (fake->linesDone >= fake->failsAtLine) {
    *band = {pmddb832::kAcquisitionFailed, 0, 0, 0, 0};
    return;
  }
  fake->linesDone += 2;
  *band = {pmddb832::kAcquisitionGoOn, 0, fake->linesDone % kHeight == 0, 2, 16};
}
void Abort() {
  ++fake->aborts;
}
std::uint32_t Error() {
  return fake->failure;
}

pmscan::ModuleExports Module() {
  pmscan::ModuleExports module;
  module.getOptionStatus = &Status;
  module.initAcquire = &Init;
  module.acquireImage = &Acquire;
  module.abortScan = &Abort;
  module.getScanError = &Error;
  return module;
}

// Writes down what happens to it.
struct Store : pmscan::PageStore, pmscan::RowSink {
  pmscan::RowSink& Begin(std::uint32_t page, std::uint32_t, std::uint32_t) override {
    story += " begin " + std::to_string(page);
    return *this;
  }
  void Write(std::span<const std::uint8_t>, std::uint32_t, std::uint32_t lines) override {
    story += " +" + std::to_string(lines);
  }
  void End(std::uint32_t lines) override { story += " end " + std::to_string(lines); }
  void Finish() override { story += " finish"; }
  std::string FileOf(std::uint32_t page) const override { return std::to_string(page) + ".png"; }
  const std::vector<pmscan::SavedFile>& Files() const override { return files; }

  std::string story;
  std::vector<pmscan::SavedFile> files;
};

struct Fixture {
  Fixture() {
    fake = &feeder;
    manners.acquisition.isInterrupted = [this] { return feeder.linesDone >= interruptAtLine; };
    manners.waitForPaper = [this](std::uint32_t trial) { waits.push_back(trial); };
  }

  // The code of the failure, 0 for a batch that ends well.
  std::uint32_t Scan() {
    return pmscan::tests::CodeOf(
        [this] { end = ScanPages(Module(), batch, manners, store, saved); });
  }

  FakeFeeder feeder;
  pmscan::Batch batch{
      *pmscan::FindScanSource("feeder"), {8, 0, 8, false}, pmscan::kBlueFirst, std::nullopt, 0};
  pmscan::BatchManners manners;
  Store store;
  std::vector<pmscan::SavedPage> saved;
  std::vector<std::uint32_t> waits;
  std::uint32_t interruptAtLine = ~0u;
  std::optional<BatchEnd> end;
};

TEST_CASE_FIXTURE(Fixture, "pmscan: a batch ends well when the feeder is empty after a page") {
  feeder.statuses = {0, 0, 13};
  CHECK(Scan() == 0);
  CHECK(end == BatchEnd::kFeederEmpty);
  CHECK(store.story == " begin 1 +2 +2 end 4 begin 2 +2 +2 end 4 finish");
  REQUIRE(saved.size() == 2);
  CHECK(saved[1].number == 2);
  CHECK(saved[1].file == "2.png");
  CHECK(saved[1].IsWhole());
}

TEST_CASE_FIXTURE(Fixture, "pmscan: a batch ends with the number of pages that was asked for") {
  batch.pages = 2;
  CHECK(Scan() == 0);
  CHECK(end == BatchEnd::kAllPages);
  CHECK(saved.size() == 2);
}

TEST_CASE_FIXTURE(Fixture, "pmscan: a feeder that is empty from the start is a failure") {
  feeder.statuses = {13};
  CHECK(Scan() == pmscan::kOptionEmpty);
  CHECK(store.story == " finish");
}

TEST_CASE_FIXTURE(Fixture, "pmscan: a feeder that turns out empty when the page starts is empty") {
  feeder.failsAtLine = 4;
  feeder.failure = 13;
  CHECK(Scan() == 0);
  CHECK(end == BatchEnd::kFeederEmpty);
  CHECK(store.story == " begin 1 +2 +2 end 4 begin 2 end 0 finish");
}

TEST_CASE_FIXTURE(Fixture, "pmscan: paper that runs out within a page is a failure") {
  feeder.failsAtLine = 6;
  feeder.failure = 13;
  CHECK(Scan() == pmscan::kOptionEmpty);
  CHECK(saved.size() == 1);
}

TEST_CASE_FIXTURE(Fixture, "pmscan: a jam is a failure that keeps the pages before it") {
  feeder.failsAtLine = 6;
  feeder.failure = 15;
  CHECK(Scan() == 15);
  CHECK(store.story == " begin 1 +2 +2 end 4 begin 2 +2 end 0 finish");
  CHECK(saved.size() == 1);
}

TEST_CASE_FIXTURE(Fixture,
                  "pmscan: what came of a page that jams is kept where that is asked for") {
  batch.keepsPartial = true;
  feeder.failsAtLine = 6;
  feeder.failure = 15;
  CHECK(Scan() == 15);
  CHECK(store.story == " begin 1 +2 +2 end 4 begin 2 +2 end 2 finish");
  REQUIRE(saved.size() == 2);
  CHECK(saved[1].lines == 2);
}

TEST_CASE_FIXTURE(Fixture, "pmscan: a jam between two pages is no end of the paper") {
  feeder.statuses = {0, 15};
  CHECK(Scan() == 15);
  CHECK(saved.size() == 1);
}

TEST_CASE_FIXTURE(Fixture, "pmscan: an interrupted page is cancelled and kept as far as it came") {
  interruptAtLine = 6;
  CHECK(Scan() == pmscan::kInterrupted);
  CHECK(feeder.aborts == 1);
  CHECK(store.story == " begin 1 +2 +2 end 4 begin 2 +2 end 2 finish");
  REQUIRE(saved.size() == 2);
  CHECK(saved[1].lines == 2);
  CHECK(saved[1].height == 4);
}

TEST_CASE_FIXTURE(Fixture, "pmscan: an interruption between two pages cancels nothing") {
  interruptAtLine = 4;
  CHECK(Scan() == pmscan::kInterrupted);
  CHECK(feeder.aborts == 0);
  CHECK(store.story == " begin 1 +2 +2 end 4 finish");
}

TEST_CASE_FIXTURE(Fixture, "pmscan: the feeder is asked again until paper is there") {
  batch.pages = 1;
  batch.paperSeconds = 5;
  feeder.statuses = {13, 14, 13, 0};
  CHECK(Scan() == 0);
  CHECK(waits == std::vector<std::uint32_t>{1, 2, 3});
}

TEST_CASE_FIXTURE(Fixture, "pmscan: the feeder is asked again as often as allowed") {
  batch.paperSeconds = 2;
  feeder.statuses = {13, 13, 13};
  CHECK(Scan() == pmscan::kOptionEmpty);
  CHECK(waits == std::vector<std::uint32_t>{1, 2});
}

TEST_CASE_FIXTURE(Fixture, "pmscan: each page is waited for anew, and none that comes ends well") {
  batch.paperSeconds = 2;
  feeder.statuses = {13, 0, 13, 13, 0, 13, 13, 13};
  CHECK(Scan() == 0);
  CHECK(waits == std::vector<std::uint32_t>{1, 1, 2, 1, 2});
  CHECK(saved.size() == 2);
}

TEST_CASE_FIXTURE(Fixture, "pmscan: waiting for paper waits for nothing else") {
  batch.paperSeconds = 5;
  feeder.statuses = {13, 15};
  CHECK(Scan() == 15);
  CHECK(waits.size() == 1);
}

TEST_CASE_FIXTURE(Fixture, "pmscan: an interruption ends the waiting for paper") {
  batch.paperSeconds = 5;
  feeder.statuses = {13, 13, 13, 13, 13, 13};
  manners.acquisition.isInterrupted = [this] { return waits.size() == 2; };
  CHECK(Scan() == pmscan::kInterrupted);
}

}  // namespace
