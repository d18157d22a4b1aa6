#include <doctest/doctest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "capture/pcapng/pcapng_writer.h"
#include "capture/trace/trace_import.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/devices/captured_connection.h"
#include "pmscan/report/error_codes.h"
#include "simulator/catalog/catalog.h"
#include "simulator/faults/fault_injector.h"
#include "tests/scans/captured_scan.h"
#include "tests/scans/whole_scan.h"

namespace pmddb832::tests {
namespace {

capture::Capture Record(const std::string& scannerName) {
  const auto scanner = simulator::MakeScanner(scannerName, ColourPicture(64, 48));
  simulator::FaultInjector cable(*scanner, {});
  return RecordScan(cable, true);
}

// A file that goes with this object, and the device that it holds.
class CapturedScanner {
 public:
  CapturedScanner(const std::string& captureText, bool isTolerant)
      : path_(Write(captureText)), connection_("capture:" + path_.string(), isTolerant) {}
  ~CapturedScanner() { std::filesystem::remove(path_); }
  CapturedScanner(const CapturedScanner&) = delete;
  CapturedScanner& operator=(const CapturedScanner&) = delete;

  pmscan::CapturedConnection& operator*() { return connection_; }
  pmscan::CapturedConnection* operator->() { return &connection_; }

 private:
  static std::filesystem::path Write(const std::string& text) {
    std::filesystem::path path = std::filesystem::temp_directory_path() / "pmddb832-captured.txt";
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }

  const std::filesystem::path path_;
  pmscan::CapturedConnection connection_;
};

std::string Replaced(std::string text, const std::string& old, const std::string& fresh) {
  const std::size_t begin = text.find(old);
  REQUIRE(begin != std::string::npos);
  return text.replace(begin, old.size(), fresh);
}

TEST_CASE("captured device: a scan brings what it brought when it was recorded") {
  for (const std::string family : {"extended", "standard"}) {
    CAPTURE(family);
    const capture::Capture recorded = Record(family);
    CapturedScanner scanner(TextOf(recorded), false);
    CHECK(TextOf(RecordScan(scanner->Device(), true)) == TextOf(recorded));
    CHECK_FALSE(scanner->Judge(0));
  }
}

TEST_CASE("captured device: an imported capture, which has no calls, does as well") {
  for (const std::string family : {"extended", "standard"}) {
    CAPTURE(family);
    const capture::Capture recorded = Record(family);
    const auto imported = capture::ImportTrace(capture::ToPcapng(recorded), {});
    CapturedScanner scanner(TextOf(imported.capture), false);
    CHECK(TextOf(RecordScan(scanner->Device(), true)) == TextOf(recorded));
    CHECK_FALSE(scanner->Judge(0));
  }
}

// The area's left edge, sent as the host of the capture did not send it.
std::string ShiftedArea() {
  return Replaced(TextOf(Record("extended")), "+ 2C 01 00 00 2C 01 00 00 08 00 00 00",
                  "+ 2C 01 00 00 2C 01 00 00 09 00 00 00");
}

TEST_CASE("captured device: strictly, nothing is answered behind the first difference") {
  CapturedScanner scanner(ShiftedArea(), false);
  const std::string came = TextOf(RecordScan(scanner->Device(), true));
  CHECK(came.find("status=2") != std::string::npos);
  CHECK(scanner->Judge(9).value().code == pmscan::kReplayDiffers);
}

TEST_CASE("captured device: tolerantly, other parameters bring the recorded picture") {
  CapturedScanner scanner(ShiftedArea(), true);
  CHECK(TextOf(RecordScan(scanner->Device(), true)) == TextOf(Record("extended")));
  CHECK_FALSE(scanner->Judge(0));
  CHECK_FALSE(scanner->Judge(13));
}

TEST_CASE("captured device: the model is the one that the capture's host expected") {
  const std::string reset = "call PMReset\nwrite 2 : 1B 40\n";
  const std::string title = "pmddb832 capture 1\n";
  CHECK(CapturedScanner(title + "host modelId = \"QM2500\"\n" + reset, false)->ModelId() ==
        "QM2500");
  CHECK(CapturedScanner(title + reset, false)->ModelId().empty());
}

TEST_CASE("captured device: a capture without transfers is refused") {
  try {
    const CapturedScanner scanner("pmddb832 capture 1\ncall PMReset\n", false);
    FAIL("taken");
  } catch (const pmscan::Failure& failure) {
    CHECK(failure.code == 67);
  }
}

}  // namespace
}  // namespace pmddb832::tests
