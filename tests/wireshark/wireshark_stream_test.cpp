#include <doctest/doctest.h>

#include "tests/capture/sample_conversation.h"
#include "tests/wireshark/wireshark.h"

// A real host's USB packets need not end where the messages end.

namespace {

using namespace pmddb832::tests;

TEST_CASE("a reply whose header and data come in one packet") {
  SampleConversation sample;
  sample.Write({0x1B, 'q'}).Read({0x02, 0x00, 0x02, 0x00, 0x00, 0x48});
  const Dissection told(BusTrace(sample.capture),
                        {"pmddb832.reply.count", "pmddb832.focus.focus_position"});
  CHECK(told.Packet(2) == "2|0x48");
}

TEST_CASE("a reply that comes in two packets is shown in the second") {
  const Bytes identity = SampleIdentity();
  SampleConversation sample;
  sample.Write({0x1C, 'I'}).Read({identity.begin(), identity.begin() + 50});
  sample.Read({identity.begin() + 50, identity.end()});
  const Dissection told(BusTrace(sample.capture),
                        {"pmddb832.identity.product_name", "pmddb832.identity.flatbed_width"});
  CHECK(told.Packet(2) == "|");
  CHECK(told.Packet(3) == "SCANNER QM-5500|5100");
}

TEST_CASE("a header that comes in two packets, the second with the data") {
  SampleConversation sample;
  sample.Write({0x1B, 'q'}).Read({0x02, 0x00, 0x02}).Read({0x00, 0x00, 0x48});
  const Dissection told(BusTrace(sample.capture),
                        {"pmddb832.reply.count", "pmddb832.focus.focus_position"});
  CHECK(told.Packet(2) == "|");
  CHECK(told.Packet(3) == "2|0x48");
}

TEST_CASE("a read of a bus that failed is marked, and one that only ended is not shown") {
  SampleConversation sample;
  sample.Write({0x1C, 'F'}).FailedRead(16, -1).Write({0x1C, 'F'}).Read({});
  const Dissection told(BusTrace(sample.capture), {"_ws.col.Info", "_ws.expert.message"});
  CHECK(told.Packet(2).starts_with("nothing came (the transfer failed)|"));
  CHECK(told.Packet(2).ends_with("The transfer failed"));
  CHECK(told.Packet(4) == "URB_BULK in|");
}

TEST_CASE("a block of the picture that comes in several packets") {
  SampleConversation sample;
  sample.Command({0x1C, 'W'}, SampleParameters()).Write({0x1C, 'G'}).Read(SampleTransferHeader());
  sample.Read(Repeated(1000, 0)).ReadImage(600, 0).Read({0x00}).Write({0x06}).ReadImage(1601, 0);
  const Dissection told = Dissection(BusTrace(sample.capture), {"_ws.col.Info"});
  CHECK(told.Packet(7) == "block 1 of 3, 16 lines, 1600 bytes, goes on");
  CHECK(told.Packet(8) == "block 1 of 3, 16 lines, 1600 bytes, goes on");
  CHECK(told.Packet(9) == "block 1 of 3, 16 lines, 1600 bytes, status ok");
  CHECK(told.Packet(11) == "block 2 of 3, 16 lines, 1600 bytes, status ok");
}

TEST_CASE("the header of the first block and its lines in one packet") {
  SampleConversation sample;
  sample.Command({0x1B, 'd'}, {1}).Write({0x1B, 'G'});
  sample.Read(Joined({0x02, 0x20, 100, 0, 1, 0}, Repeated(100, 0)));
  CHECK(Dissection(BusTrace(sample.capture), {"_ws.col.Info"}).Packet(6) ==
        "reply to ESC G start scan: status last block, line 100 bytes, lines 1; block 1, 1 line, "
        "100 bytes, status ok, last block");
}

TEST_CASE("a command whose letter comes in a packet of its own") {
  SampleConversation sample;
  sample.Command({0x1B, '@'}).Write({0x1C}).Write({'F'}).Read(Repeated(16, 0));
  const Dissection told = Dissection(BusTrace(sample.capture), {"_ws.col.Info"});
  CHECK(told.Packet(4) == "FS F status");
  CHECK(told.Packet(5) == "reply to FS F status");
}

TEST_CASE("a NAK in the place of a reply") {
  SampleConversation sample;
  sample.Write({0x1C, 'I'}).Read({0x15}).Command({0x1B, '@'});
  const Dissection told = Dissection(BusTrace(sample.capture), {"_ws.col.Info"});
  CHECK(told.Packet(2) == "NAK to FS I identity");
  CHECK(told.Packet(4) == "ACK to ESC @ reset");
}

TEST_CASE("commands that no scanner knows, and bytes that nothing asked for") {
  SampleConversation sample;
  sample.Command({0x1B, '@'}).Write({0x1B, 'x'}).Write({1, 2, 3}).Read({0x06});
  const Dissection told(sample.capture, {"_ws.col.Info", "_ws.expert.message"});
  CHECK(told.Packet(3) == "unknown command 0x1B78|A command that no scanner knows");
  CHECK(told.Packet(4) == "3 unexpected bytes|Bytes that nothing asked for");
  CHECK(told.Packet(5) == "1 unexpected byte|Bytes that nothing asked for");
}

TEST_CASE("a byte of the parameter block that must be 0") {
  Bytes parameters = SampleParameters();
  parameters[44] = 1;
  SampleConversation sample;
  sample.Command({0x1C, 'W'}, parameters);
  CHECK(Dissection(sample.capture, {"_ws.expert.message"}).Packet(3) == "Byte 44 must be 0");
}

TEST_CASE("a transfer that failed is marked") {
  SampleConversation sample;
  sample.Command({0x1B, '@'}).Write({0x1C, 'F'}).FailedRead(16, -1);
  std::get<capture::Transfer>(sample.capture.entries[3]).bytes = Bytes(4, 0);
  const Dissection told(sample.capture, {"_ws.col.Info", "frame.comment"});
  CHECK(told.Packet(4) == "first part (the transfer failed)|the host asked for 16 bytes");
}

// Which packets the filter for trouble finds.
std::vector<std::size_t> Troubles(const SampleConversation& sample) {
  const Dissection told(sample.capture, {"_ws.expert.severity"});
  std::vector<std::size_t> found;
  for (std::size_t packet = 1; packet <= told.Packets(); ++packet) {
    if (told.Packet(packet).find("8388608") != std::string::npos) found.push_back(packet);
  }
  return found;
}

TEST_CASE("the filter for trouble finds reads that failed, and writes") {
  SampleConversation sample;
  sample.Write({0x1C, 'F'}).FailedRead(16, -1).Write({0x1C, 'F'}).Read(Repeated(16, 0));
  sample.Write({0x1C, 'F'});
  CHECK(Troubles(sample) == std::vector<std::size_t>{2});
  std::get<capture::Transfer>(sample.capture.entries.back()).result = -1;
  CHECK(Troubles(sample) == std::vector<std::size_t>{2, 5});
}

TEST_CASE("the filter for trouble finds replies and blocks that were cut short") {
  SampleConversation sample;
  sample.Write({0x1C, 'F'}).ShortRead(16, Repeated(15, 0)).Write({0x1B, '@'}).ShortRead(1, {});
  sample.Command({0x1C, 'W'}, SampleParameters()).Write({0x1C, 'G'}).Read(SampleTransferHeader());
  sample.ShortRead(1601, Repeated(1600, 0));
  CHECK(Troubles(sample) == std::vector<std::size_t>{2, 4, 11});
}

TEST_CASE(
    "the filter for trouble finds bytes that nothing asked for, also none and in a next call") {
  SampleConversation sample;
  sample.Command({0x1B, '@'}).Read({0x06}).Read({}).Write({0x1C, 'F'});
  sample.Call("PMGetScanError").Read(Repeated(16, 0)).Write({0x06});
  CHECK(Troubles(sample) == std::vector<std::size_t>{3, 4, 6, 7});
}

TEST_CASE("bulk transfers without a command are not taken for a scanner's, unless asked for") {
  SampleConversation sample;
  sample.Write({1, 2, 3, 4}).Read({0x06});
  CHECK(Summaries(sample.capture).Packet(1) == "URB_BULK out");
  const Dissection told(sample.capture, {"_ws.col.Protocol"}, "pmddb832.device:1");
  CHECK(told.Packet(1) == "PMDDB832");
}

// A packet of a capture that Linux made: bulk, bus 1, device 5.
Bytes LinuxPacket(char kind, std::uint8_t endpoint, std::uint8_t status, const Bytes& data) {
  const auto count = static_cast<std::uint8_t>(data.size());
  const auto size = static_cast<std::uint8_t>(64 + count);
  const std::uint8_t sign = status == 0 ? 0 : 0xFF;
  Bytes packet{0, 0, 0, 0, 0, 0, 0, 0, size, 0, 0, 0, size, 0, 0, 0};
  packet = Joined(packet, Repeated(8, 1));
  packet = Joined(packet, {static_cast<std::uint8_t>(kind), 3, endpoint, 5, 1, 0, '-', 0});
  packet = Joined(packet, Repeated(12, 0));
  packet = Joined(packet, {status, sign, sign, sign, count, 0, 0, 0, count, 0, 0, 0});
  return Joined(Joined(packet, Repeated(24, 0)), data);
}

TEST_CASE("a capture that Linux made of a scanner") {
  Bytes file{0xD4, 0xC3, 0xB2, 0xA1, 2, 0, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 4, 0, 220, 0, 0, 0};
  file = Joined(file, LinuxPacket('S', 0x02, 0x8D, {0x1B, '@'}));
  file = Joined(file, LinuxPacket('C', 0x81, 0, {0x15}));
  const Dissection told(file, {"_ws.col.Info", "pmddb832.answer"});
  CHECK(told.Packet(1) == "ESC @ reset|");
  CHECK(told.Packet(2) == "NAK to ESC @ reset|0x15");
}

TEST_CASE("a preference for another device leaves this one alone") {
  const Dissection told(ExtendedSample().capture, {"_ws.col.Protocol"}, "pmddb832.device:7");
  CHECK(told.Packet(1) == "USB");
}

}  // namespace
