#include <doctest/doctest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>

#include "capture/pcapng/pcapng_writer.h"
#include "capture/trace/trace_import.h"
#include "tests/trace/bus_trace.h"

namespace {

using namespace pmddb832::tests;
using capture::Capture;

// A folder with converted captures, and what the programs of Wireshark make of them.
struct Workshop {
  Workshop() { std::filesystem::create_directory(folder); }
  ~Workshop() { std::filesystem::remove_all(folder); }
  Workshop(const Workshop&) = delete;
  Workshop& operator=(const Workshop&) = delete;

  std::string Name(const std::string& file) const { return (folder / file).string(); }

  std::string Convert(const Capture& capture) const {
    const Bytes file = capture::ToPcapng(capture);
    std::ofstream(Name("from"), std::ios::binary)
        .write(reinterpret_cast<const char*>(file.data()),
               static_cast<std::streamsize>(file.size()));
    return Name("from");
  }

  // What is left of the capture when the file "to" that the commands make of "from" is imported.
  std::string Rewritten(const Capture& capture, const std::string& commands) const {
    Convert(capture);
    const std::string all = "cd '" + folder.string() + "' && " + commands + " >log 2>&1";
    if (std::system(all.c_str()) != 0) {
      throw std::runtime_error(
          "tshark, editcap and text2pcap are needed here (apt-get install "
          "--no-install-recommends tshark): " +
          commands);
    }
    return TextOf(capture::ImportTrace(FileBytes(Name("to")), {}).capture);
  }

  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("pmddb832-trace-" + std::to_string(getpid()));
};

TEST_CASE("what editcap and tshark write anew is the same capture") {
  const Workshop workshop;
  for (const std::string& file : CaptureFiles()) {
    const Capture capture = CaptureIn(file);
    for (const char* command : {"editcap from to", "tshark -n -r from -w to"}) {
      CAPTURE(file);
      CAPTURE(command);
      CHECK(workshop.Rewritten(capture, command) == TextOf(TransfersOf(capture)));
    }
  }
}

bool IsKept(const Capture& transfers) {
  for (const capture::Entry& entry : transfers.entries) {
    if (!std::get<capture::Transfer>(entry).bytes.has_value()) return false;
  }
  return true;
}

// Classic pcap files have no comments and no names of interfaces: the protocol tells the rest.
TEST_CASE("what became a pcap file is the same capture, where all bytes were kept") {
  const Workshop workshop;
  int kept = 0;
  for (const std::string& file : CaptureFiles()) {
    const Capture transfers = TransfersOf(CaptureIn(file));
    if (!IsKept(transfers)) continue;
    ++kept;
    for (const char* format : {"pcap", "nsecpcap"}) {
      CAPTURE(file);
      const std::string command = "editcap -F " + std::string(format) + " from to";
      CHECK(workshop.Rewritten(transfers, command) == TextOf(transfers));
    }
  }
  CHECK(kept >= 5);
}

// text2pcap gives packets times of its own.
std::string WithoutTimes(std::string text) {
  for (std::size_t at = text.find('@'); at != std::string::npos; at = text.find('@', at)) {
    text.erase(at, text.find('\n', at) - at);
  }
  return text;
}

TEST_CASE("what text2pcap makes of a dump is the same capture, but for the times") {
  const Workshop workshop;
  for (const std::string name : {"extended-colour", "standard-info", "standard-grey"}) {
    CAPTURE(name);
    const Capture transfers = TransfersOf(CaptureIn(PMDDB832_CAPTURES "/" + name + ".txt"));
    const std::string again =
        workshop.Rewritten(transfers, "tshark -n -r from -x >dump && text2pcap -a -l 249 dump to");
    CHECK(WithoutTimes(again) == WithoutTimes(TextOf(transfers)));
  }
}

TEST_CASE("a trace that editcap cut at its beginning is imported, with a note") {
  const Workshop workshop;
  const Capture transfers = TransfersOf(CaptureIn(PMDDB832_CAPTURES "/standard-grey.txt"));
  Capture rest = transfers;
  rest.entries.erase(rest.entries.begin(), rest.entries.begin() + 4);
  CHECK(workshop.Rewritten(transfers, "editcap from to 1-4") == TextOf(rest));
  const auto read = capture::ImportTrace(FileBytes(workshop.Name("to")), {});
  REQUIRE(read.notes.size() == 1);
  CHECK(read.notes[0].find("The trace begins within the conversation") == 0);
}

TEST_CASE("a trace that editcap cut within the image is imported, with notes") {
  const Workshop workshop;
  const Capture transfers = TransfersOf(CaptureIn(PMDDB832_CAPTURES "/standard-grey.txt"));
  for (const std::ptrdiff_t cut : {82, 83, 84, 89}) {
    CAPTURE(cut);
    Capture rest = transfers;
    rest.entries.erase(rest.entries.begin(), rest.entries.begin() + cut);
    CHECK(workshop.Rewritten(transfers, "editcap from to 1-" + std::to_string(cut)) ==
          TextOf(rest));
    const auto read = capture::ImportTrace(FileBytes(workshop.Name("to")), {});
    CHECK(read.notes ==
          std::vector<std::string>{
              "No device is sent a scanner's commands: taken is the only one with bulk transfers.",
              "The trace begins within the conversation: what stands before the first command "
              "cannot be understood."});
  }
}

TEST_CASE("a trace whose packets editcap shortened is imported, with a note") {
  const Workshop workshop;
  const Capture transfers = TransfersOf(CaptureIn(PMDDB832_CAPTURES "/extended-colour.txt"));
  std::string text = workshop.Rewritten(transfers, "editcap -s 128 from to");
  CHECK(text.find("crc 00000000 last 00") != std::string::npos);
}

}  // namespace
