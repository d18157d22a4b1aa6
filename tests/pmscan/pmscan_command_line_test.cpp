#include <doctest/doctest.h>

#include <iterator>
#include <sstream>

#include "pmscan/command_line/command_line.h"
#include "tests/pmscan/refusal.h"

namespace {

using pmscan::Command;
using pmscan::Options;
using pmscan::ParseCommandLine;
using Arguments = std::vector<std::string>;

// The arguments with a blank between each two.
Options ParseWords(const std::string& text) {
  std::istringstream stream(text);
  return ParseCommandLine({std::istream_iterator<std::string>(stream), {}});
}

std::uint32_t RefusalOf(const Arguments& arguments) {
  return pmscan::tests::CodeOf([&] { ParseCommandLine(arguments); });
}

TEST_CASE("pmscan: a scan needs nothing but a file and has its defaults") {
  const Options options = ParseCommandLine({"scan", "-o", "page.png"});
  CHECK(options.command == Command::kScan);
  CHECK(options.names.Of(1) == "page.png");
  CHECK(options.pages == 1);
  CHECK(options.device == "sim:extended");
  CHECK(options.mode.name == "colour");
  CHECK(options.source.name == "flatbed");
  CHECK(options.dotsPerInch == 300);
  CHECK(!options.area);
}

TEST_CASE("pmscan: every option of a scan arrives") {
  const Options options = ParseWords(
      "scan --output p.tif --device sim:extended:QM2700 --dll a.dll --mode lineart --resolution "
      "600 "
      "--area 0in,0in,1in,2in --source feeder --mirror --invert --original o.png --progress json "
      "--warm-up 5 --wait-for-paper=7 --overwrite --json");
  CHECK(options.device == "sim:extended:QM2700");
  CHECK(options.modulePath == "a.dll");
  CHECK(options.mode.pixelType == 0);
  CHECK(options.dotsPerInch == 600);
  CHECK(options.area->height.amount == 2);
  CHECK(options.source.code == 0);
  CHECK(options.isMirrored);
  CHECK(options.isInverted);
  CHECK(options.original == "o.png");
  CHECK(options.progress == pmscan::ProgressStyle::kJson);
  CHECK(options.warmUpSeconds == 5);
  CHECK(options.paperSeconds == 7);
  CHECK(options.mayOverwrite);
  CHECK(options.isJson);
}

TEST_CASE("pmscan: info takes a device and a module") {
  const Options options = ParseCommandLine({"info", "--device", "sim:x", "--dll", "a.dll"});
  CHECK(options.command == Command::kInfo);
  CHECK(options.device == "sim:x");
  CHECK(options.modulePath == "a.dll");
}

TEST_CASE("pmscan: help is given wherever it is asked for") {
  CHECK(ParseCommandLine({"--help"}).command == Command::kHelp);
  CHECK(ParseCommandLine({"scan", "--help"}).command == Command::kHelp);
  CHECK(ParseCommandLine({"info", "-h"}).command == Command::kHelp);
  CHECK(ParseCommandLine({"--help"}).helpOf == Command::kHelp);
  CHECK(ParseCommandLine({"scan", "--help"}).helpOf == Command::kScan);
  CHECK(ParseCommandLine({"--version"}).command == Command::kVersion);
}

TEST_CASE("pmscan: a misspelt word is answered with the one that was meant") {
  const auto refusal = [](const Arguments& arguments) {
    return pmscan::tests::RefusalOf([&] { ParseCommandLine(arguments); });
  };
  CHECK(refusal({"scna", "-o", "a.png"}) == "64 There is no \"scna\"; did you mean \"scan\"?");
  CHECK(refusal({"scan", "-o", "a.png", "--mdoe=grey"}) ==
        "64 There is no \"--mdoe\"; did you mean \"--mode\"?");
  CHECK(refusal({"scan", "--hlep"}) == "64 There is no \"--hlep\"; did you mean \"--help\"?");
  CHECK(refusal({"scan", "-o", "a.png", "--mode", "gery"}) ==
        "64 There is no mode \"gery\"; did you mean \"grey\"? --mode can be: lineart, grey, "
        "colour, colour12, palette, deep-grey, deep-colour.");
  CHECK(refusal({"scan", "-o", "a.png", "--format", "pgn"})
            .starts_with("64 There is no format \"pgn\"; did you mean \"png\"?"));
}

TEST_CASE("pmscan: a word that is near to nothing is named alone") {
  const auto refusal = [](const Arguments& arguments) {
    return pmscan::tests::RefusalOf([&] { ParseCommandLine(arguments); });
  };
  CHECK(refusal({"scan", "--paper-size", "a4"}) == "64 There is no \"--paper-size\".");
  CHECK(refusal({"scan", "--dpi=300", "-o", "a.png"}) == "64 There is no \"--dpi\".");
  CHECK(refusal({"decode", "a.capture", "b.capture"}) == "64 Nothing takes \"b.capture\".");
}

TEST_CASE("pmscan: what is missing in a command line is named") {
  const auto refusal = [](const Arguments& arguments) {
    return pmscan::tests::RefusalOf([&] { ParseCommandLine(arguments); });
  };
  const std::string subcommands = "; it can be: scan, info, focus, feed, eject, reset, devices, ";
  CHECK(refusal({}).starts_with("64 A subcommand is missing" + subcommands));
  CHECK(
      refusal({"paint", "a.png"}).starts_with("64 There is no subcommand \"paint\"" + subcommands));
  CHECK(refusal({"--hlep"}) == "64 There is no \"--hlep\"; did you mean \"--help\"?");
  CHECK(refusal({"scan", "-o"}) == "64 --output needs a value behind it.");
  CHECK(refusal({"decode"}) ==
        "64 Subcommand decode needs a capture to read: pmscan decode FILE [--json]");
  CHECK(refusal({"replay", "-o", "a.png"}) ==
        "64 Subcommand replay needs a capture to read: pmscan replay FILE [options]");
  CHECK(refusal({"convert", "-o", "a.pcapng"}) ==
        "64 Subcommand convert needs a capture to read: pmscan convert FILE -o FILE.pcapng");
  CHECK(refusal({"convert", "a.capture"}) ==
        "64 Subcommand convert needs a file to write: pmscan convert FILE -o FILE.pcapng");
  CHECK(refusal({"report", "a.capture"}) ==
        "64 Subcommand report needs a file to write: pmscan report FILE -o FILE.html");
  CHECK(refusal({"import"}) ==
        "64 Subcommand import needs a trace to read: pmscan import TRACE [options]");
}

TEST_CASE("pmscan: a file's name may begin with a slash") {
  CHECK(ParseCommandLine({"scan", "-o", "/tmp/a.png"}).names.Of(1) == "/tmp/a.png");
  CHECK(ParseCommandLine({"decode", "/tmp/x.capture"}).readCapture == "/tmp/x.capture");
}

TEST_CASE("pmscan: a command line that is not understood is a usage error") {
  for (const std::string line : {"",
                                 "print",
                                 "scan",
                                 "scan -o page.gif",
                                 "scan -o a.png --mode red",
                                 "scan -o a.png --source tray",
                                 "scan -o a.png --resolution 0",
                                 "scan -o a.png --resolution 65536",
                                 "scan -o a.png --resolution many",
                                 "scan -o a.png --area 1,1,1,1",
                                 "scan -o a.png extra",
                                 "scan -o a.png --progress",
                                 "scan -o a.png --progress wheel",
                                 "scan -o a.png --batch b.png",
                                 "scan -o a.tif --pages 0",
                                 "scan --batch %d%d.png --pages 2",
                                 "scan -o a.png --source feeder --wait-for-paper=3601",
                                 "scan -o a.png --source feeder --wait-for-paper=soon",
                                 "info -o a.png",
                                 "devices --device sim:x"}) {
    CAPTURE(line);
    CHECK(pmscan::tests::CodeOf([line] { ParseWords(line); }) == pmscan::kUsage);
  }
}

TEST_CASE("pmscan: a batch of numbered files takes all that the feeder holds") {
  const Options options =
      ParseCommandLine({"scan", "--batch", "page%02d.png", "--source", "feeder"});
  CHECK(options.names.AreNumbered());
  CHECK(options.names.Of(3) == "page03.png");
  CHECK(!options.pages);
}

TEST_CASE("pmscan: a batch into a TIFF file puts all pages into it") {
  const Options options = ParseCommandLine({"scan", "--batch", "all.tif", "--source", "feeder"});
  CHECK(!options.names.AreNumbered());
  CHECK(!options.pages);
  CHECK(ParseCommandLine({"scan", "-o", "all.tif", "--pages", "3"}).pages == 3);
  CHECK(ParseCommandLine({"scan", "--batch", "all.tif", "--pages", "3"}).pages == 3);
}

TEST_CASE("pmscan: a percent sign in the name of one picture is part of it") {
  CHECK(ParseCommandLine({"scan", "-o", "100%d.png"}).names.Of(1) == "100%d.png");
}

TEST_CASE("pmscan: a dry run needs no file") {
  const Options options = ParseCommandLine({"scan", "--dry-run"});
  CHECK(options.isDryRun);
  CHECK(!options.hasOutput);
}

TEST_CASE("pmscan: waiting for paper has a time of its own when none is given") {
  CHECK(ParseCommandLine({"scan", "-o", "a.png", "--source", "feeder", "--wait-for-paper"})
            .paperSeconds == 60);
}

TEST_CASE("pmscan: the devices can be listed") {
  CHECK(ParseCommandLine({"devices"}).command == Command::kDevices);
  CHECK(ParseCommandLine({"devices", "--json"}).isJson);
}

TEST_CASE("pmscan: options that contradict each other are told apart from usage errors") {
  CHECK(RefusalOf({"scan", "-o", "a.jpg", "--mode", "deep-grey"}) == pmscan::kUnsupported);
  CHECK(RefusalOf({"scan", "-o", "a.png", "--invert"}) == pmscan::kUnsupported);
  CHECK(RefusalOf({"scan", "-o", "a.png", "--pages", "2"}) == pmscan::kUnsupported);
  CHECK(RefusalOf({"scan", "--batch", "a.png", "--source", "feeder"}) == pmscan::kUnsupported);
  CHECK(RefusalOf({"scan", "--batch", "%d.png"}) == pmscan::kUnsupported);
  CHECK(RefusalOf({"scan", "-o", "a.png", "--wait-for-paper"}) == pmscan::kUnsupported);
}

TEST_CASE("pmscan: a device is a simulator's name behind sim:") {
  CHECK(pmscan::SimulatorName("sim:extended:QM2700") == "extended:QM2700");
  CHECK(pmscan::SimulatorName("SIM:Extended:qm2700") == "Extended:qm2700");
  CHECK_THROWS_AS(pmscan::SimulatorName("usb:1"), pmscan::Failure);
  CHECK(pmscan::IsSimulatorName("sim:x"));
  CHECK(!pmscan::IsSimulatorName("sti:x"));
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
  CHECK(RefusalOf({"scan", "-o", "a.png", "--capture-data"}) == pmscan::kUsage);
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
  CHECK(RefusalOf({"replay"}) == pmscan::kUsage);
}

TEST_CASE("pmscan: what is written is not what is read, nor what is written besides") {
  for (const Arguments& arguments : {
           Arguments{"report", "a.x", "-o", "./a.x", "--overwrite"},
           Arguments{"convert", "a.x", "-o", "b/../a.x"},
           Arguments{"import", "a.x", "-o", "a.x", "--overwrite"},
           Arguments{"import", "a.capture", "--overwrite"},
           Arguments{"replay", "a.x", "--capture", "a.x"},
           Arguments{"replay", "a.x", "-o", "b.png", "--capture", "b.png"},
           Arguments{"scan", "-o", "a.png", "--capture", "a.png"},
           Arguments{"scan", "-o", "a.png", "--original", "a.png"},
           Arguments{"scan", "--batch", "a%d.png", "--source", "feeder", "--capture", "a12.png"},
           Arguments{"info", "--device", "capture:a.x", "--capture", "a.x"},
           Arguments{"info", "--device", "sim:a.json", "--capture", "a.json"},
           Arguments{"info", "--faults", "a.json", "--capture", "a.json"},
       }) {
    CAPTURE(arguments[0] + " " + arguments[1]);
    CHECK(RefusalOf(arguments) == pmscan::kUnsupported);
  }
  CHECK(pmscan::tests::RefusalOf([] {
          ParseCommandLine({"report", "a.x", "-o", "a.x"});
        }) == "65 -o and FILE name the same file, a.x: what is written needs a file of its own.");
  CHECK(RefusalOf({"report", "a.x", "-o", "b.x"}) == 0);
}

}  // namespace
