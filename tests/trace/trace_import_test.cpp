#include "capture/trace/trace_import.h"

#include <doctest/doctest.h>

#include <algorithm>

#include "capture/trace/trace_packets.h"
#include "tests/trace/bus_trace.h"

namespace {

using namespace pmddb832::tests;
using capture::ImportedTrace;

constexpr std::uint16_t kUsbmon = 220;
constexpr std::uint16_t kUsbPcap = 249;

// The transfers without their times, a line each.
std::string Lines(const ImportedTrace& trace) {
  std::string text;
  for (const capture::Entry& entry : trace.capture.entries) {
    const std::string line = TextOf({{entry}, {}});
    const std::size_t end = line.find_last_not_of(' ', line.find('@') - 1);
    text += line.substr(2, end - 1) + "\n";
  }
  return text;
}

bool HasNote(const ImportedTrace& trace, const std::string& note) {
  const std::vector<std::string>& notes = trace.notes;
  return std::find(notes.begin(), notes.end(), note) != notes.end();
}

std::string Refusal(const Bytes& file, const capture::DeviceChoice& choice = {}) {
  try {
    capture::ImportTrace(file, choice);
  } catch (const capture::TraceError& error) {
    return error.what();
  }
  return "imported";
}

struct Import : BusTrace {
  explicit Import(std::uint16_t linkType = kUsbmon) : BusTrace(linkType, false) {}
  ImportedTrace Get(const capture::DeviceChoice& choice = {}) const {
    return capture::ImportTrace(File(), choice);
  }
};

TEST_CASE("a command whose letters came one by one is one write") {
  Import trace;
  trace.AddWrite({0x1B}, 1);
  trace.AddWrite({'@'}, 2);
  trace.AddRead(1, {6}, 3);
  trace.AddWrite({0x1C, 'F'}, 4);
  CHECK(Lines(trace.Get()) == "write 2 : 1B 40\nread 1 : 06\nwrite 2 : 1C 46\n");
}

TEST_CASE("an answer that came with what follows it is split as the protocol has it") {
  Import trace;
  trace.AddWrite({0x1B, 'I'}, 1);
  trace.AddRead(64, {2, 0, 3, 0, 0xA, 0xB, 0xC}, 2);
  const ImportedTrace read = trace.Get();
  CHECK(Lines(read) == "write 2 : 1B 49\nread 4 : 02 00 03 00\nread 3 : 0A 0B 0C\n");
  CHECK(HasNote(read, "1 transfer of the bus split into those that the protocol has."));
}

TEST_CASE("what nothing asked for is neither split nor joined") {
  Import trace;
  trace.AddWrite({0x1B, '@'}, 1);
  trace.AddRead(512, {6, 6, 6}, 2);
  trace.AddRead(8, Bytes(8, 1), 3);
  trace.AddRead(8, Bytes(8, 2), 4);
  CHECK(Lines(trace.Get()) ==
        "write 2 : 1B 40\nread 512 got 3 : 06 06 06\nread 8 : 01 01 01 01 01 01 01 01\n"
        "read 8 : 02 02 02 02 02 02 02 02\n");
}

TEST_CASE("a read that ended with a short packet is over, though more was expected") {
  Import trace(kUsbPcap);
  trace.AddWrite({0x1C, 'F'}, 1);
  trace.AddRead(16, {2, 0, 0, 0, 0, 0}, 2);
  trace.AddRead(16, Bytes(10), 3);
  CHECK(Lines(trace.Get()) ==
        "write 2 : 1C 46\nread 16 got 6 : 02 00 00 00 00 00\n"
        "read 10 : 00 00 00 00 00 00 00 00 00 00\n");
}

TEST_CASE("failures keep the number that the bus tells") {
  Import trace;
  trace.AddWrite({0x1B, '@'}, 1, -32);
  trace.AddWrite({0x1B, '@'}, 2);
  trace.AddRead(1, {}, 3, -110);
  CHECK(Lines(trace.Get()) ==
        "write 2 result FFFFFFE0 : 1B 40\nwrite 2 : 1B 40\nread 1 got 0 result FFFFFF92\n");
}

TEST_CASE("transfers stand in the order in which they ended, with the times of their ends") {
  Import trace;
  trace.Add({.request = 90, .endpoint = 0x81, .length = 1, .microseconds = 10});
  trace.AddWrite({0x1B, '@'}, 20);
  trace.Add({.request = 90,
             .isEnd = true,
             .endpoint = 0x81,
             .length = 1,
             .data = {6},
             .microseconds = 1'500'000});
  const ImportedTrace read = trace.Get();
  CHECK(Lines(read) == "write 2 : 1B 40\nread 1 : 06\n");
  CHECK(std::get<capture::Transfer>(read.capture.entries[0]).microseconds == 20);
  CHECK(std::get<capture::Transfer>(read.capture.entries[1]).microseconds == 1'500'000);
}

TEST_CASE("a trace that begins within the conversation is imported with a note") {
  Import trace;
  trace.Add({.request = 80, .isEnd = true, .length = 2});
  trace.Add({.request = 81, .isEnd = true, .endpoint = 0x81, .length = 1, .data = {6}});
  trace.AddWrite({0x1C, 'F'}, 1);
  const ImportedTrace read = trace.Get();
  CHECK(Lines(read) == "read 1 : 06\nwrite 2 : 1C 46\n");
  CHECK(HasNote(read, "Left out: 1 write whose begin, with the bytes, is not in the trace."));
  CHECK(HasNote(read,
                "The trace begins within the conversation: what stands before the first command "
                "cannot be understood."));
}

TEST_CASE("a trace that begins with a command has no note on its begin") {
  Import trace;
  trace.AddWrite({0x1B, 'I'}, 1);
  trace.AddRead(4, {2, 0, 0, 0}, 2);
  CHECK(trace.Get().notes == std::vector<std::string>{"Left out: 1 packet of other devices."});
}

TEST_CASE("a trace that begins with another command than an identification says so") {
  Import trace;
  trace.AddWrite({0x1B, '@'}, 1);
  trace.AddRead(1, {6}, 2);
  CHECK(HasNote(trace.Get(),
                "The first command does not ask what the scanner is: what stands in front of it "
                "may be missing."));
}

TEST_CASE("transfers that nothing asked for and commands without an answer are noted") {
  Import trace;
  trace.AddWrite({0x1C, 'I'}, 1);
  trace.AddWrite({0x1B, '@'}, 2);
  trace.AddRead(1, {6}, 3);
  trace.AddRead(80, Bytes(80), 4);
  trace.AddWrite({0x1C, 'W'}, 5);
  trace.AddRead(1, {6}, 6);
  trace.AddWrite({0x1C, 'F'}, 7);
  const ImportedTrace read = trace.Get();
  CHECK(HasNote(read, "1 transfer that nothing asked for, or for less: packets may be missing."));
  CHECK(HasNote(read,
                "2 times something was sent before all that was waited for had come: packets may "
                "be missing."));
  CHECK(
      HasNote(read, "The trace ends within the conversation: what was asked for last is missing."));
}

// The notes on the conversation without its transfer of that number.
std::vector<std::string> NotesWithout(const capture::Capture& transfers, std::size_t left) {
  Import trace;
  for (std::size_t i = 0; i < transfers.entries.size(); ++i) {
    if (i != left) trace.AddInPieces(std::get<capture::Transfer>(transfers.entries[i]), 1 << 20);
  }
  return trace.Get().notes;
}

TEST_CASE("of a conversation no transfer is missing without a note, and a whole one has none") {
  const std::vector<std::string> none{"Left out: 1 packet of other devices."};
  for (const char* name : {"standard-grey", "extended-colour"}) {
    CAPTURE(name);
    const capture::Capture transfers =
        TransfersOf(CaptureIn(PMDDB832_CAPTURES "/" + std::string(name) + ".txt"));
    const std::size_t count = transfers.entries.size();
    CHECK(NotesWithout(transfers, count) == none);
    for (std::size_t i = 0; i < count; ++i) {
      CAPTURE(i);
      CHECK(NotesWithout(transfers, i).size() > 1);
    }
  }
}

TEST_CASE("a trace that lost packets is imported with notes") {
  Import trace;
  trace.AddWrite({0x1B, '@'}, 1);
  trace.Add({.request = 70, .length = 2, .data = {0x1C, 'F'}, .microseconds = 2});
  trace.Add({.request = 71, .endpoint = 0x81, .length = 16, .microseconds = 3});
  const ImportedTrace read = trace.Get();
  CHECK(Lines(read) == "write 2 : 1B 40\nwrite 2 : 1C 46\n");
  CHECK(HasNote(read, "Left out: 1 read whose end is not in the trace."));
  CHECK(HasNote(read, "1 write without an end in the trace: taken for good."));
}

TEST_CASE("bytes that the trace did not keep are zeros, and of image data the length") {
  Import trace;
  trace.AddWrite({0x1C, 'F'}, 1);
  trace.Add({.request = 60, .isEnd = true, .endpoint = 0x81, .length = 16, .data = {2, 0x40}});
  trace.Add({.request = 61, .isEnd = true, .endpoint = 0x81, .length = 4000000000, .data = {1}});
  const ImportedTrace read = trace.Get();
  CHECK(Lines(read) ==
        "write 2 : 1C 46\nread 16 : 02 40 00 00 00 00 00 00 00 00 00 00 00 00 00 00\n"
        "read 4000000000 crc 00000000 last 00\n");
  CHECK(HasNote(read,
                "2 transfers of which the trace kept only a part: of image data the length is "
                "kept, else zeros stand for what is missing."));
}

TEST_CASE("what is not of the conversation is left out and counted") {
  Import trace;
  trace.AddWrite({0x1B, '@'}, 1);
  trace.AddRead(1, {6}, 2);
  trace.Add({.request = 50, .kind = 2, .endpoint = 0x80, .length = 18});
  trace.Add({.request = 51, .isEnd = true, .endpoint = 0x84, .length = 1, .data = {6}});
  trace.Add({.request = 52, .isEnd = true, .kind = 1, .endpoint = 0x83, .length = 1, .data = {1}});
  trace.Add({.request = 53, .device = 7, .length = 31, .data = Bytes(31)});
  const ImportedTrace read = trace.Get();
  CHECK(Lines(read) == "write 2 : 1B 40\nread 1 : 06\n");
  CHECK(HasNote(read, "Left out: 2 packets of other devices."));
  CHECK(HasNote(read, "Left out: 2 packets of the scanner's control and interrupt transfers."));
  CHECK(HasNote(read, "Left out: 1 packet at the scanner's other bulk endpoints."));
}

TEST_CASE("the scanner is the device that is sent commands") {
  Import trace(kUsbPcap);
  trace.Add({.request = 40, .device = 7, .length = 31, .data = Bytes(31)});
  trace.AddWrite({0x1B, '@'}, 1);
  CHECK(trace.Get().scanner == capture::UsbAddress{1, 5});
  CHECK(Refusal(trace.File(), {.bus = 2, .device = {}}).find("one device on bus 2 that") !=
        std::string::npos);
}

TEST_CASE("of two scanners one is to be named") {
  Import trace(kUsbPcap);
  trace.AddWrite({0x1B, '@'}, 1);
  trace.Add({.device = 6, .bus = 3, .length = 2, .data = {0x1C, 'F'}});
  CHECK(Refusal(trace.File()) ==
        "expected one device that is sent a scanner's commands, came 2. Name the scanner, or trace "
        "it from before the host opens it; with bulk transfers there are: --bus 1 --device 5 (1 "
        "command), --bus 3 --device 6 (1 command).");
  CHECK(Lines(trace.Get({.bus = {}, .device = 6})) == "write 2 : 1C 46\n");
  CHECK(Lines(trace.Get({.bus = 1, .device = {}})) == "write 2 : 1B 40\n");
}

constexpr const char* kOnlyOne =
    "No device is sent a scanner's commands: taken is the only one with bulk transfers.";

TEST_CASE("without commands the scanner is the only device with bulk transfers, with a note") {
  Import trace;
  trace.AddRead(3, {1, 2, 3}, 1);
  trace.Add({.request = 50, .kind = 2, .endpoint = 0x80, .device = 7, .length = 18});
  const ImportedTrace read = trace.Get();
  CHECK(read.scanner == capture::UsbAddress{1, 5});
  CHECK(Lines(read) == "read 3 : 01 02 03\n");
  CHECK(HasNote(read, kOnlyOne));
  CHECK(HasNote(trace.Get({.bus = 1, .device = {}}), kOnlyOne));
}

TEST_CASE("of two devices without commands one is to be named, and needs no note") {
  Import trace;
  trace.AddRead(3, {1, 2, 3}, 1);
  trace.Add({.endpoint = 0x81, .device = 7, .bus = 3, .length = 13});
  CHECK(Refusal(trace.File()) ==
        "expected one device that is sent a scanner's commands, came none. Name the scanner, or "
        "trace it from before the host opens it; with bulk transfers there are: --bus 1 --device 5 "
        "(no command), --bus 3 --device 7 (no command).");
  const ImportedTrace named = trace.Get({.bus = {}, .device = 5});
  CHECK(Lines(named) == "read 3 : 01 02 03\n");
  CHECK_FALSE(HasNote(named, kOnlyOne));
  CHECK(HasNote(trace.Get({.bus = 1, .device = {}}), kOnlyOne));
}

TEST_CASE("a trace without bulk transfers has no scanner") {
  Import trace;
  trace.Add({.request = 50, .kind = 2, .endpoint = 0x80, .length = 18});
  CHECK(Refusal(trace.File()) ==
        "expected one device that is sent a scanner's commands, came none. Name the scanner, or "
        "trace it from before the host opens it; with bulk transfers there are: none.");
}

TEST_CASE("a trace without USB packets is refused") {
  const Bytes empty{0xD4, 0xC3, 0xB2, 0xA1, 2, 0, 4, 0, 0, 0, 0, 0,
                    0,    0,    0,    0,    0, 0, 4, 0, 1, 0, 0, 0};
  CHECK(Refusal(empty).find("came no packet.") != std::string::npos);
  Bytes ethernet = empty;
  const Bytes packet{0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 0xFF};
  ethernet.insert(ethernet.end(), packet.begin(), packet.end());
  CHECK(Refusal(ethernet).find("came 1 packet of link type 1.") != std::string::npos);
}

}  // namespace
