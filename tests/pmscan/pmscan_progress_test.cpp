#include <doctest/doctest.h>

#include <algorithm>
#include <sstream>

#include "pmscan/command_line/progress.h"

namespace {

using pmscan::ProgressMeter;
using pmscan::ProgressStyle;

// A meter with a clock that stands still until it is set.
struct Meter {
  explicit Meter(ProgressStyle style, std::size_t columns = 100)
      : progress(out, style, columns, [this] { return now; }) {}
  // Of a page that has begun.
  Meter(ProgressStyle style, std::uint32_t page, std::uint32_t height, std::size_t columns = 100)
      : Meter(style, columns) {
    progress.BeginPage(page, height);
  }

  void ShowAt(int seconds, std::uint32_t lines) {
    now = start + std::chrono::seconds(seconds);
    progress.Show(lines);
  }

  const ProgressMeter::Clock::time_point start{};
  ProgressMeter::Clock::time_point now = start;
  std::ostringstream out;
  ProgressMeter progress;
};

TEST_CASE("pmscan: a bar tells the page, the lines, the rate and the time left") {
  Meter meter(ProgressStyle::kBar, 2, 1000);
  meter.ShowAt(1, 250);
  CHECK(meter.out.str() ==
        "\rPage 2 [........................]   0 %  0 of 1000 lines"
        "\rPage 2 [######..................]  25 %  250 of 1000 lines, 250 lines/s, 3 s left");
}

TEST_CASE("pmscan: a bar writes its line over, covers what was longer, and ends it once") {
  Meter meter(ProgressStyle::kBar, 1, 1000);
  meter.ShowAt(2, 500);
  meter.ShowAt(4, 1000);
  meter.progress.EndLine();
  meter.progress.EndLine();
  CHECK(meter.out.str() ==
        "\rPage 1 [........................]   0 %  0 of 1000 lines"
        "\rPage 1 [############............]  50 %  500 of 1000 lines, 250 lines/s, 2 s left"
        "\rPage 1 [########################] 100 %  1000 of 1000 lines, 250 lines/s         \n");
}

TEST_CASE("pmscan: time left is told in minutes once it is one") {
  Meter meter(ProgressStyle::kBar, 1, 1000);
  meter.ShowAt(5, 50);
  CHECK(meter.out.str().ends_with("10 lines/s, 1:35 min left"));
}

TEST_CASE("pmscan: each page begins its bar on a line of its own") {
  Meter meter(ProgressStyle::kBar, 1, 10);
  meter.ShowAt(1, 10);
  meter.progress.BeginPage(2, 10);
  CHECK(
      meter.out.str().ends_with("10 lines/s\n"
                                "\rPage 2 [........................]   0 %  0 of 10 lines"));
}

TEST_CASE("pmscan: in a file or pipe the bar is a line for every tenth") {
  Meter meter(ProgressStyle::kLines, 1, 100);
  meter.ShowAt(1, 11);
  meter.ShowAt(1, 19);
  meter.ShowAt(2, 20);
  meter.ShowAt(3, 30);
  CHECK(meter.out.str() ==
        "Page 1  11 %  11 of 100 lines, 11 lines/s, 9 s left\n"
        "Page 1  20 %  20 of 100 lines, 10 lines/s, 8 s left\n"
        "Page 1  30 %  30 of 100 lines, 10 lines/s, 7 s left\n");
}

TEST_CASE("pmscan: progress as JSON is an object a line") {
  Meter meter(ProgressStyle::kJson, 3, 200);
  meter.ShowAt(4, 100);
  CHECK(meter.out.str() ==
        "{\"page\": 3, \"lines\": 100, \"height\": 200, \"linesPerSecond\": 25, "
        "\"secondsLeft\": 4.0}\n");
}

TEST_CASE("pmscan: before a second line is known there is no rate") {
  Meter meter(ProgressStyle::kJson, 1, 100);
  meter.ShowAt(0, 1);
  CHECK(meter.out.str().find("\"linesPerSecond\": 0,") != std::string::npos);
}

TEST_CASE("pmscan: a bar is written over ten times a second at most, and at its end") {
  Meter meter(ProgressStyle::kBar, 1, 1000);
  for (std::uint32_t line = 1; line <= 1000; ++line) {
    meter.now += std::chrono::milliseconds(1);
    meter.progress.Show(line);
  }
  const std::string text = meter.out.str();
  CHECK(std::count(text.begin(), text.end(), '\r') == 11);
  CHECK(text.ends_with("100 %  1000 of 1000 lines, 1000 lines/s         "));
}

TEST_CASE("pmscan: a bar is narrower than the terminal") {
  for (const std::size_t columns : {1u, 20u, 60u, 61u, 80u}) {
    CAPTURE(columns);
    Meter meter(ProgressStyle::kBar, 1, 1000, columns);
    meter.ShowAt(1, 250);
    const std::string text = meter.out.str();
    CHECK(text.size() - text.rfind('\r') <= columns);
  }
  Meter meter(ProgressStyle::kBar, 1, 1000, 70);
  meter.ShowAt(1, 250);
  CHECK(meter.out.str().ends_with(
      "\rPage 1 [###.........]  25 %  250 of 1000 lines, 250 lines/s, 3 s left"));
}

// Counts what goes out in one piece.
struct Pieces : std::stringbuf {
  std::streamsize xsputn(const char*, std::streamsize count) override {
    ++pieces;
    return count;
  }
  int pieces = 0;
};

TEST_CASE("pmscan: a line of progress goes out in one piece") {
  for (const ProgressStyle style :
       {ProgressStyle::kBar, ProgressStyle::kLines, ProgressStyle::kJson}) {
    Pieces pieces;
    std::ostream out(&pieces);
    ProgressMeter progress(out, style, 80);
    progress.BeginPage(1, 100);
    const int before = pieces.pieces;
    progress.Show(100);
    CHECK(pieces.pieces == before + 1);
  }
}

TEST_CASE("pmscan: no progress is no text") {
  Meter meter(ProgressStyle::kNone, 1, 100);
  meter.ShowAt(1, 100);
  meter.progress.EndLine();
  CHECK(meter.out.str().empty());
}

TEST_CASE("pmscan: progress has three styles on the command line") {
  CHECK(pmscan::FindProgressStyle("bar") == ProgressStyle::kBar);
  CHECK(pmscan::FindProgressStyle("json") == ProgressStyle::kJson);
  CHECK(pmscan::FindProgressStyle("none") == ProgressStyle::kNone);
  CHECK(!pmscan::FindProgressStyle("lines"));
}

// Ticks at that second.
void TickAt(Meter& meter, int seconds) {
  meter.now = meter.start + std::chrono::seconds(seconds);
  meter.progress.Tick();
}

TEST_CASE("pmscan: a bar moves each second before the first page, and before its first line") {
  Meter meter(ProgressStyle::kBar);
  TickAt(meter, 0);
  CHECK(meter.out.str().empty());
  TickAt(meter, 1);
  TickAt(meter, 1);
  TickAt(meter, 2);
  CHECK(meter.out.str() == "\rWaiting for the scanner, 1 s\rWaiting for the scanner, 2 s");
  meter.progress.BeginPage(3, 10);
  TickAt(meter, 5);
  CHECK(meter.out.str().find("\rPage 3  waiting for the first line, 3 s ") != std::string::npos);
}

TEST_CASE("pmscan: a bar that stands still in a page or behind it goes on to tell the time") {
  Meter meter(ProgressStyle::kBar);
  meter.progress.BeginPage(1, 1000);
  meter.ShowAt(1, 500);
  TickAt(meter, 5);
  CHECK(meter.out.str().ends_with("500 of 1000 lines, 100 lines/s, 5 s left"));
  meter.ShowAt(6, 1000);
  TickAt(meter, 8);
  CHECK(meter.out.str().ends_with("\n\rWaiting for the scanner, 2 s"));
  TickAt(meter, 9);
  CHECK(
      meter.out.str().ends_with("\n\rWaiting for the scanner, 2 s\rWaiting for the scanner, 3 s"));
}

TEST_CASE("pmscan: a bar tells what is awaited at once, and its seconds until the page begins") {
  Meter meter(ProgressStyle::kBar);
  meter.progress.Await("Preparing");
  CHECK(meter.out.str() == "\rPreparing");
  TickAt(meter, 1);
  meter.progress.BeginPage(1, 10);
  CHECK(meter.out.str().starts_with("\rPreparing\rPreparing, 1 s\rPage 1 ["));
  meter.ShowAt(2, 10);
  TickAt(meter, 4);
  CHECK(meter.out.str().ends_with("\n\rWaiting for the scanner, 2 s"));
}

TEST_CASE("pmscan: what is awaited is a line among lines, and nothing in the other styles") {
  for (const auto& [style, text] :
       {std::pair(ProgressStyle::kLines, "Preparing\n"), std::pair(ProgressStyle::kJson, ""),
        std::pair(ProgressStyle::kNone, "")}) {
    Meter meter(style);
    meter.progress.Await("Preparing");
    TickAt(meter, 9);
    CHECK(meter.out.str() == text);
  }
}

TEST_CASE("pmscan: a note is a line of its own that a bar does not write over") {
  Meter bar(ProgressStyle::kBar);
  bar.progress.Await("Preparing");
  bar.progress.Note("Note");
  bar.progress.Await("Next");
  CHECK(bar.out.str() == "\rPreparing\rNote     \n\rNext");
  Meter none(ProgressStyle::kNone);
  none.progress.Note("Note");
  CHECK(none.out.str() == "Note\n");
}

TEST_CASE("pmscan: a bar that was left writes nothing into the text that follows it") {
  Meter meter(ProgressStyle::kBar);
  meter.progress.Await("Preparing");
  meter.progress.EndLine();
  TickAt(meter, 9);
  CHECK(meter.out.str() == "\rPreparing\n");
  meter.progress.Say("More");
  TickAt(meter, 10);
  CHECK(meter.out.str() == "\rPreparing\n\rMore\rPreparing, 1 s");
}

TEST_CASE("pmscan: what is waited for is written over in a bar, and a line elsewhere") {
  Meter bar(ProgressStyle::kBar, 20);
  bar.progress.Say("The scanner is warming up");
  bar.progress.Say("Still");
  CHECK(bar.out.str() == "\rThe scanner is warm\rStill              ");
  Meter none(ProgressStyle::kNone);
  none.progress.Say("The scanner is warming up");
  TickAt(none, 9);
  CHECK(none.out.str() == "The scanner is warming up\n");
}

}  // namespace
