#include <doctest/doctest.h>

#include <sstream>

#include "pmscan/captures/import_command.h"
#include "tests/pmscan/refusal.h"
#include "tests/pmscan/test_folder.h"

namespace {

using pmscan::Options;

struct TraceFolder : pmscan::tests::TestFolder {
  TraceFolder() : TestFolder("pmscan_import") {}

  Options Write(const std::string& trace) const {
    TestFolder::Write("usb.pcap", trace);
    Options options;
    options.trace = Name("usb.pcap");
    return options;
  }
};

// ESC @ to device 9 on bus 2, and its answer 1.5 ms later, which USBPcap tells.
std::string Reset() {
  constexpr unsigned char kFile[] = {
      0xD4, 0xC3, 0xB2, 0xA1, 2,    0,    4, 0, 0,  0, 0, 0,    0,    0, 0, 0,
      0,    0,    4,    0,    249,  0,    0, 0,                                 //
      0,    0,    0,    0x60, 0,    0,    0, 0, 29, 0, 0, 0,    29,   0, 0, 0,  //
      27,   0,    1,    0,    0,    0,    0, 0, 0,  0, 0, 0,    0,    0, 9, 0,
      0,    2,    0,    9,    0,    2,    3, 2, 0,  0, 0, 0x1B, 0x40,           //
      0,    0,    0,    0x60, 0xDC, 5,    0, 0, 28, 0, 0, 0,    28,   0, 0, 0,  //
      27,   0,    2,    0,    0,    0,    0, 0, 0,  0, 0, 0,    0,    0, 9, 0,
      1,    2,    0,    9,    0,    0x81, 3, 1, 0,  0, 0, 0x06};
  return {reinterpret_cast<const char*>(kFile), sizeof(kFile)};
}

TEST_CASE("import writes a capture beside the trace and says whose it is") {
  const TraceFolder folder;
  std::ostringstream out;
  const Options options = folder.Write(Reset());
  pmscan::RunImportCommand(options, out);
  const std::string note =
      "The first command does not ask what the scanner is: what stands in front of it may be "
      "missing.\n";
  CHECK(out.str() ==
        folder.Name("usb.capture") + ": 2 transfers of device 9 on bus 2\nNote: " + note);
  const std::string title =
      "pmddb832 capture 1\n# pmscan import " + options.trace + "\n# " + note + "\n";
  const std::string write = "  write 2 : 1B 40" + std::string(63, ' ') + "@0.000000\n";
  const std::string read = "  read 1 : 06" + std::string(67, ' ') + "@0.001500\n";
  CHECK(folder.Text("usb.capture") == title + write + read);
}

TEST_CASE("import tells what it left out, and the capture too") {
  const TraceFolder folder;
  std::ostringstream out;
  pmscan::RunImportCommand(folder.Write(Reset() + "cut"), out);
  const std::string note = "The file ends, or is damaged, behind its last packet that is whole.";
  CHECK(out.str().find("\nNote: " + note + "\n") != std::string::npos);
  CHECK(folder.Text("usb.capture").find("\n# " + note + "\n") != std::string::npos);
}

TEST_CASE("import replaces a file only when it may") {
  const TraceFolder folder;
  Options options = folder.Write(Reset());
  folder.TestFolder::Write("mine.capture", "mine");
  options.importedFile = folder.Name("mine.capture");
  std::ostringstream out;
  const auto import = [&] { pmscan::RunImportCommand(options, out); };
  CHECK(pmscan::tests::CodeOf(import) == pmscan::kFileUnwritable);
  CHECK(folder.Text("mine.capture") == "mine");
  options.mayOverwrite = true;
  CHECK(pmscan::tests::CodeOf(import) == 0);
}

TEST_CASE("import refuses what is no trace, and a device that is not there") {
  const TraceFolder folder;
  std::ostringstream out;
  Options options = folder.Write("pmddb832 capture 1\n");
  const auto import = [&] { pmscan::RunImportCommand(options, out); };
  CHECK(pmscan::tests::RefusalOf(import) ==
        "72 " + options.trace +
            ": expected a trace in the format pcap or pcapng, came a file that begins with 70 6D "
            "64 64. Save the trace as one of these; Wireshark's editcap converts others.");
  options = folder.Write(Reset());
  options.traceDevice = 3;
  CHECK(pmscan::tests::CodeOf(import) == pmscan::kTraceUnreadable);
  options.trace = folder.Name("none");
  CHECK(pmscan::tests::CodeOf(import) == pmscan::kTraceUnreadable);
}

}  // namespace
