#include <doctest/doctest.h>

#include <future>
#include <stdexcept>

#include "pmscan/command_line/interruption.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/scan/guarded_store.h"
#include "pmscan/scan/watched_work.h"
#include "tests/pmscan/refusal.h"

namespace {

using pmscan::GuardedStore;
using pmscan::RunWatched;
using pmscan::WatchManners;

// Looks as often as it can.
WatchManners Manners(bool isInterrupted, int& ticks) {
  WatchManners manners;
  manners.isInterrupted = [isInterrupted] { return isInterrupted; };
  manners.tick = [&ticks] { ++ticks; };
  manners.betweenLooks = std::chrono::milliseconds(1);
  manners.patience = 3;
  return manners;
}

TEST_CASE("pmscan: work that never ends is left after its patience once it is interrupted") {
  int ticks = 0;
  std::promise<void> release;
  const auto stuck = std::make_shared<std::shared_future<void>>(release.get_future());
  CHECK_FALSE(RunWatched([stuck] { stuck->wait(); }, Manners(true, ticks)));
  CHECK(ticks == 3);
  release.set_value();
}

TEST_CASE("pmscan: interrupted work that goes on is told of once") {
  int ticks = 0;
  int told = 0;
  std::promise<void> release;
  const auto stuck = std::make_shared<std::shared_future<void>>(release.get_future());
  WatchManners manners = Manners(true, ticks);
  manners.whenInterrupted = [&] {
    ++told;
    CHECK(ticks == 1);
  };
  CHECK_FALSE(RunWatched([stuck] { stuck->wait(); }, manners));
  CHECK(told == 1);
  release.set_value();
}

TEST_CASE("pmscan: work that ends is waited for, and what it throws is thrown") {
  int ticks = 0;
  bool isDone = false;
  CHECK(RunWatched([&] { isDone = true; }, Manners(false, ticks)));
  CHECK(isDone);
  CHECK_THROWS_AS(RunWatched([] { throw std::out_of_range("x"); }, Manners(false, ticks)),
                  std::out_of_range);
}

TEST_CASE("pmscan: while work goes on there are ticks") {
  int ticks = 0;
  std::promise<void> release;
  WatchManners manners = Manners(false, ticks);
  manners.tick = [&] {
    if (++ticks == 5) release.set_value();
  };
  CHECK(RunWatched([&] { release.get_future().wait(); }, manners));
  CHECK(ticks >= 5);
}

// Remembers what it is told.
class Told : public pmscan::PageStore, public pmscan::RowSink {
 public:
  pmscan::RowSink& Begin(std::uint32_t page, std::uint32_t, std::uint32_t) override {
    text += "begin " + std::to_string(page) + ";";
    return *this;
  }
  void End(std::uint32_t lines) override { text += "end " + std::to_string(lines) + ";"; }
  void Finish() override { text += "finish;"; }
  std::string FileOf(std::uint32_t page) const override { return std::to_string(page) + ".png"; }
  const std::vector<pmscan::SavedFile>& Files() const override { return files; }
  void Write(std::span<const std::uint8_t>, std::uint32_t, std::uint32_t lines) override {
    text += "write " + std::to_string(lines) + ";";
  }

  std::string text;
  std::vector<pmscan::SavedFile> files;
};

TEST_CASE("pmscan: a store that is closed in a page keeps the lines that came, and takes no more") {
  Told told;
  GuardedStore store;
  store.Guard(told);
  store.Begin(1, 4, 7).Write({}, 1, 7);
  store.End(7);
  pmscan::RowSink& sink = store.Begin(2, 4, 9);
  sink.Write({}, 1, 3);
  sink.Write({}, 1, 2);
  const std::vector<pmscan::SavedPage> saved = store.Close();
  CHECK(told.text == "begin 1;write 7;end 7;begin 2;write 3;write 2;end 5;finish;");
  REQUIRE(saved.size() == 2);
  CHECK(saved[0].IsWhole());
  CHECK(saved[1].file == "2.png");
  CHECK(saved[1].lines == 5);
  CHECK(saved[1].height == 9);
  CHECK(store.IsClosed());
  CHECK(pmscan::tests::CodeOf([&] { sink.Write({}, 1, 1); }) == pmscan::kInterrupted);
  CHECK(pmscan::tests::CodeOf([&] { store.End(6); }) == pmscan::kInterrupted);
  CHECK(pmscan::tests::CodeOf([&] { store.Finish(); }) == pmscan::kInterrupted);
  CHECK(told.text.ends_with("finish;"));
}

TEST_CASE("pmscan: a store that is closed between pages, or before the first line, keeps no part") {
  Told told;
  GuardedStore store;
  store.Guard(told);
  store.Begin(1, 4, 7);
  CHECK(store.Close().empty());
  CHECK(told.text == "begin 1;end 0;finish;");
  GuardedStore unused;
  CHECK(unused.Close().empty());
  CHECK(pmscan::tests::CodeOf([&] { unused.Guard(told); }) == pmscan::kInterrupted);
}

TEST_CASE("pmscan: Ctrl+C that comes several times within 0.3 seconds is pressed once") {
  pmscan::Interruption interruption;
  CHECK(!interruption.HasCome());
  CHECK(interruption.Count(7001) == pmscan::Interrupt::kFirst);
  CHECK(interruption.HasCome());
  CHECK(interruption.Count(7001) == pmscan::Interrupt::kSameAgain);
  CHECK(interruption.Count(7300) == pmscan::Interrupt::kSameAgain);
  CHECK(interruption.Count(7301) == pmscan::Interrupt::kSecond);
}

TEST_CASE("pmscan: the second Ctrl+C counts however late it comes") {
  pmscan::Interruption interruption;
  CHECK(interruption.Count(0) == pmscan::Interrupt::kFirst);
  CHECK(interruption.Count(86400000) == pmscan::Interrupt::kSecond);
}

}  // namespace
