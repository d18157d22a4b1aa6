#include <doctest/doctest.h>

#include "pmscan/command_line/command_line.h"
#include "tests/pmscan/refusal.h"

namespace {

using pmscan::Command;
using pmscan::Options;
using pmscan::ParseCommandLine;

std::uint32_t CodeOf(const std::vector<std::string>& arguments) {
  return pmscan::tests::CodeOf([&] { ParseCommandLine(arguments); });
}

TEST_CASE("pmscan: nothing is captured unless asked for") {
  CHECK(ParseCommandLine({"scan", "-o", "a.png"}).capture.file.empty());
}

TEST_CASE("pmscan: scan and info take a file for their capture") {
  const Options scan =
      ParseCommandLine({"scan", "-o", "a.png", "--capture", "a.capture", "--capture-data"});
  CHECK(scan.capture.file == "a.capture");
  CHECK(scan.capture.keepsImageData);
  const Options info = ParseCommandLine({"info", "--capture", "i.capture", "--overwrite"});
  CHECK(info.capture.file == "i.capture");
  CHECK_FALSE(info.capture.keepsImageData);
  CHECK(info.mayOverwrite);
}

TEST_CASE("pmscan: --capture-data needs a capture to be in") {
  CHECK(CodeOf({"scan", "-o", "a.png", "--capture-data"}) == pmscan::kUsage);
}

TEST_CASE("pmscan: replay takes a capture, strictly unless told otherwise") {
  const Options strict = ParseCommandLine({"replay", "a.capture"});
  CHECK(strict.command == Command::kReplay);
  CHECK(strict.readCapture == "a.capture");
  CHECK_FALSE(strict.isTolerant);
  const Options tolerant =
      ParseCommandLine({"replay", "a.capture", "--tolerant", "-o", "a.png", "--dll", "other.dll"});
  CHECK(tolerant.isTolerant);
  CHECK(tolerant.replayedPicture == "a.png");
  CHECK(tolerant.modulePath == "other.dll");
  CHECK(CodeOf({"replay"}) == pmscan::kUsage);
}

}  // namespace
