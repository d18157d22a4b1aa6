#include <doctest/doctest.h>

#include <array>
#include <string>

#include "capture/file/capture_writer.h"
#include "pmscan/captures/capture_file.h"
#include "pmscan/command_line/failure.h"
#include "simulator/catalog/catalog.h"
#include "simulator/faults/fault_injector.h"
#include "tests/scans/captured_scan.h"
#include "tests/scans/whole_scan.h"

namespace pmddb832::tests {
namespace {

// In tests/captures; in each stands how it was made.
constexpr std::array kCaptures{
    "extended-colour", "extended-feeder",    "extended-grey", "extended-info", "extended-jam",
    "standard-colour", "extended-unplugged", "standard-grey", "standard-info", "standard-lineart",
};

capture::Capture Record(const std::string& scannerName, bool keepsImageData = true) {
  const auto scanner = simulator::MakeScanner(scannerName, ColourPicture(64, 48));
  simulator::FaultInjector cable(*scanner, {});
  return RecordScan(cable, keepsImageData);
}

// The first entry of a text that begins so.
std::string LineWith(const std::string& text, const std::string& start) {
  const std::size_t begin = text.find(start);
  return begin == std::string::npos ? "none" : text.substr(begin, text.find('\n', begin) - begin);
}

std::string Replaced(std::string text, const std::string& old, const std::string& fresh) {
  const std::size_t begin = text.find(old);
  REQUIRE(begin != std::string::npos);
  return text.replace(begin, old.size(), fresh);
}

TEST_CASE("captures: a recorded scan replays strictly to the same lines") {
  for (const std::string family : {"extended", "standard"}) {
    CAPTURE(family);
    const ReplayOutcome outcome = ReplayCapture(ReadAgain(Record(family)), false);
    CHECK(outcome.differences.empty());
    CHECK(outcome.lines.size() == 40 * 3 * 30);
    CHECK(outcome.report.find("1 band of lines, compared by checksum") != std::string::npos);
  }
}

TEST_CASE("captures: without image data the rest replays, and zeros stand for the picture") {
  const capture::Capture capture = ReadAgain(Record("extended", false));
  const ReplayOutcome outcome = ReplayCapture(capture, false);
  CHECK(outcome.differences.empty());
  CHECK(outcome.lines == std::vector<std::uint8_t>(40 * 3 * 30));
  CHECK(outcome.report.find("zeros stood for it") != std::string::npos);
}

TEST_CASE("captures: two recordings of one scan are the same text") {
  CHECK(TextOf(Record("standard")) == TextOf(Record("standard")));
}

TEST_CASE("captures: a failing scan is recorded up to its end, and fails again") {
  const capture::Capture capture = ReadAgain(Record("extended+unplugged-at-byte=2000"));
  const std::string text = TextOf(capture);
  CHECK(LineWith(text, "return PMAcquireImage").find("status=2") != std::string::npos);
  CHECK(LineWith(text, "return PMCloseScanner") != "none");
  CHECK(ReplayCapture(capture, false).differences.empty());
}

TEST_CASE("captures: a scanner that does not open is recorded and replayed") {
  const capture::Capture capture = ReadAgain(Record("extended+unplugged-at-transfer=0"));
  CHECK(TextOf(capture).find("return PMOpenScanner result=0") != std::string::npos);
  CHECK(ReplayCapture(capture, false).differences.empty());
}

TEST_CASE("captures: another setting of the host is found in the parameter block") {
  const std::string text = TextOf(Record("extended"));
  const ReplayOutcome outcome = ReplayCapture(
      FromText(Replaced(text, "host resolution = 300", "host resolution = 200")), false);
  REQUIRE(outcome.differences.size() == 1);
  CHECK(outcome.differences[0].call == "PMAcquireImage");
  CHECK(outcome.differences[0].decoded.find("expected 300 dpi, came 200 dpi") != std::string::npos);
}

TEST_CASE("captures: tolerantly the replay goes on behind that to the whole picture") {
  const std::string text = Replaced(TextOf(Record("extended")), "call PMInitAcquire",
                                    "host brightness = 666\ncall PMInitAcquire");
  const ReplayOutcome outcome = ReplayCapture(FromText(text), true);
  CHECK(outcome.differences.size() == 1);
  CHECK(outcome.lines.size() == 40 * 3 * 30);
}

TEST_CASE("captures: another setting of the module is a difference") {
  const std::string text = TextOf(Record("extended"));
  const ReplayOutcome outcome = ReplayCapture(
      FromText(Replaced(text, "module commandLevel = 8", "module commandLevel = 7")), false);
  REQUIRE(outcome.differences.size() == 1);
  CHECK(outcome.differences[0].expected == "module commandLevel = 7");
  CHECK(outcome.differences[0].came == "module commandLevel = 8");
}

TEST_CASE("captures: another result of a call is a difference, a missing one is none") {
  const std::string text = TextOf(Record("extended"));
  const ReplayOutcome outcome = ReplayCapture(
      FromText(Replaced(text, "return PMOpenScanner result=1", "return PMOpenScanner result=0")),
      false);
  REQUIRE(outcome.differences.size() == 1);
  CHECK(outcome.differences[0].expected == "return PMOpenScanner result=0");
  CHECK(outcome.differences[0].came == "return PMOpenScanner result=1");
  const std::string shorter =
      Replaced(text, "return PMOpenScanner result=1", "return PMOpenScanner");
  CHECK(ReplayCapture(FromText(shorter), false).differences.empty());
}

TEST_CASE("captures: other lines of the picture are a difference") {
  capture::Capture capture = ReadAgain(Record("extended"));
  for (capture::Entry& entry : capture.entries) {
    auto* const transfer = std::get_if<capture::Transfer>(&entry);
    if (transfer != nullptr && transfer->isImage) transfer->bytes->front() ^= 1;
  }
  const ReplayOutcome outcome = ReplayCapture(capture, false);
  REQUIRE(outcome.differences.size() == 1);
  CHECK(outcome.differences[0].expected.starts_with("return PMAcquireImage crc "));
  CHECK(outcome.differences[0].decoded == "the lines of the picture are not the same\n");
}

bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// A scanner that does not take the parameters: the first ACK behind them becomes a NAK.
std::string RefusedParameters() {
  std::string text = TextOf(Record("extended"));
  const std::size_t command = text.find("write 64 :");
  REQUIRE(command != std::string::npos);
  const std::size_t answer = text.find("read 1 : 06", command);
  return text.replace(answer, 11, "read 1 : 15");
}

TEST_CASE("captures: behind a difference the replay tells what the module did") {
  const ReplayOutcome outcome = ReplayCapture(FromText(RefusedParameters()), false);
  CHECK(outcome.differences.size() == 1);
  CHECK(Has(outcome.report,
            "\nDifferences  1\nThen         PMAcquireImage returned status failed "
            "(2), done 0, lines 0, bytes 0\n"
            "Error code   22, the scanner reports an error\n"
            "So far       0 of 30 lines of the picture\n"));
}

TEST_CASE("captures: the error is told in words, as the module names it") {
  const std::string text = Replaced(TextOf(Record("extended")), "return PMOpenScanner result=1",
                                    "return PMOpenScanner result=7");
  const std::string refused = Replaced(text, "read 1 : 06", "read 1 : 15");
  const ReplayOutcome outcome = ReplayCapture(FromText(refused), false);
  CHECK(Has(outcome.report, "Then         PMOpenScanner returned failed (0)\nError code   "));
  CHECK(Has(outcome.report, "\nSo far       no picture was begun\n"));
}

TEST_CASE("captures: where nothing failed behind a difference no error is told") {
  const std::string text =
      Replaced(TextOf(Record("extended")), "module commandLevel = 8", "module commandLevel = 7");
  const ReplayOutcome outcome = ReplayCapture(FromText(text), true);
  CHECK(Has(outcome.report, "\nSo far       30 of 30 lines of the picture\n"));
  CHECK_FALSE(Has(outcome.report, "Error code"));
}

TEST_CASE("captures: without a difference nothing is told but the counts") {
  const ReplayOutcome outcome = ReplayCapture(ReadAgain(Record("standard")), false);
  CHECK_FALSE(Has(outcome.report, "Then"));
}

TEST_CASE("captures: one without calls is not replayed, and the way to scan with it is named") {
  CHECK_THROWS_WITH_AS(ReplayCapture(FromText("pmddb832 capture 1\nwrite 2 : 1B 40\n"), false),
                       "c.txt holds no calls of a host, as an imported one: there is nothing to "
                       "replay. Scan with its "
                       "scanner: pmscan scan -o FILE --device capture:c.txt",
                       pmscan::Failure);
}

TEST_CASE("captures: one that a crash cut short replays to its end") {
  const std::string text = TextOf(Record("standard"));
  const std::size_t cut = text.find("return PMAcquireImage");
  const ReplayOutcome outcome = ReplayCapture(FromText(text.substr(0, cut)), false);
  CHECK(outcome.differences.empty());
  CHECK(outcome.report.find("within a call, like the capture") != std::string::npos);
}

TEST_CASE("captures: a call that no host can make is refused with its line") {
  CHECK_THROWS_WITH_AS(ReplayCapture(FromText("pmddb832 capture 1\ncall PMWarp\n"), false),
                       "c.txt, line 2: the module has no export PMWarp.", pmscan::Failure);
  CHECK_THROWS_WITH_AS(ReplayCapture(FromText("pmddb832 capture 1\ncall PMFeed n=1\n"), false),
                       "c.txt, line 2: PMFeed has no argument n.", pmscan::Failure);
}

TEST_CASE("captures: the project's own replay strictly, with their pictures") {
  for (const std::string name : kCaptures) {
    CAPTURE(name);
    const std::string file = std::string(PMDDB832_CAPTURES "/") + name + ".txt";
    const ReplayOutcome outcome = ReplayCapture(pmscan::ReadCaptureFile(file), false);
    CHECK(outcome.differences.empty());
    CHECK(outcome.report.find("not compared") == std::string::npos);
  }
}

}  // namespace
}  // namespace pmddb832::tests
