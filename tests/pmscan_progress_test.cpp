#include <doctest/doctest.h>

#include <sstream>

#include "pmscan/progress.h"

namespace {

using pmscan::ProgressPrinter;

TEST_CASE(
    "pmscan: in a file or pipe progress is a line for every tenth, without carriage returns") {
  std::ostringstream out;
  ProgressPrinter progress(out, false);
  for (const std::uint32_t percent : {0u, 1u, 9u, 11u, 12u, 20u, 100u, 100u}) {
    ProgressPrinter::OnProgress(percent);
  }
  CHECK(out.str() == "Scanning: 0 %\nScanning: 11 %\nScanning: 20 %\nScanning: 100 %\n");
}

TEST_CASE("pmscan: on a terminal progress writes its line over and ends it once") {
  std::ostringstream out;
  {
    ProgressPrinter progress(out, true);
    ProgressPrinter::OnProgress(7);
    ProgressPrinter::OnProgress(7);
    ProgressPrinter::OnProgress(100);
    progress.EndLine();
  }
  CHECK(out.str() == "\rScanning: 7 %\rScanning: 100 %\n");
}

TEST_CASE("pmscan: progress that nobody shows is dropped") {
  ProgressPrinter::OnProgress(50);
}

}  // namespace
