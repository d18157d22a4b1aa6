#include <doctest/doctest.h>

#include "tests/program/pmscan_program.h"

// Settings of a scan, and what pmscan does besides scans, as a whole program.

namespace {

using pmscan::tests::ProgramResult;
using pmscan::tests::ProgramUnderTest;

bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: a bed of level B3 is scanned, and replayed") {
  const std::string scan = "scan -o a.png --resolution 75 --device sim:extended:HK300";
  CHECK(Run(scan).exitCode == 65);
  const ProgramResult result = Run(scan + " --area A5 --capture a.capture");
  CHECK(result.exitCode == 0);
  CHECK(Has(result.output, "B3, extended commands"));
  CHECK(Has(result.output, "437 x 620"));
  CHECK(Run("replay a.capture").exitCode == 0);
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: the feeder is fed and emptied") {
  for (const char* device : {"sim:extended:QM2500", "sim:standard:PS3100"}) {
    const std::string with = std::string(" --device ") + device;
    CHECK(Run("feed" + with).output == "The feeder was told to draw in a page.\r\n");
    CHECK(Run("eject" + with).output == "The feeder was told to throw out its page.\r\n");
    CHECK(Run("feed" + with + "+pages=0").exitCode == 13);
    CHECK(Run("reset" + with).exitCode == 0);
  }
  CHECK(Run("feed").exitCode == 65);
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: focus goes to a position where it can") {
  CHECK(Run("focus --focus -7").output == "The scanner focuses at -7.\r\n");
  CHECK(Has(Run("focus --focus 9 --json").output, "\"focus\": 9"));
  CHECK(Run("focus --focus 9 --device sim:standard:RV3000").exitCode == 65);
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: settings of a scan reach the scanner") {
  const ProgramResult result = Run(
      "scan --dry-run --mode lineart --halftone lines --brightness -2 --gamma 2.8 --sharpness 1 "
      "--zoom 50 --device sim:standard --focus 3");
  CHECK(result.exitCode == 0);
  for (const char* sent : {"ESC p focus position\r\n  43\r\n", "ESC B halftone\r\n  A0\r\n",
                           "ESC L brightness\r\n  FE\r\n", "ESC Z gamma code\r\n  10\r\n",
                           "ESC Q sharpness\r\n  01\r\n", "ESC H zoom\r\n  32 32\r\n"}) {
    CAPTURE(sent);
    CHECK(Has(result.output, sent));
  }
}

}  // namespace
