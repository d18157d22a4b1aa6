#include <doctest/doctest.h>

#include "tests/capture/sample_conversation.h"
#include "tests/wireshark/wireshark.h"

namespace {

using pmddb832::tests::Bytes;
using pmddb832::tests::Dissection;
using pmddb832::tests::SampleConversation;
using pmddb832::tests::StandardSample;

Dissection Fields(const std::vector<std::string>& fields) {
  return {StandardSample().capture, fields};
}

TEST_CASE("the identity: its header, then level, resolutions and area") {
  const Dissection told =
      Fields({"pmddb832.reply.start", "pmddb832.reply.status", "pmddb832.reply.count",
              "pmddb832.level.command_level", "pmddb832.level.resolution", "pmddb832.level.width",
              "pmddb832.level.height"});
  CHECK(told.Packet(2) == "0x02|0x00|13||||");
  CHECK(told.Packet(3) == "|||B8|50,300|5100|7020");
}

TEST_CASE("the status reply's fields") {
  const std::string block = "pmddb832.status_reply.";
  const Dissection told =
      Fields({block + "main_status", block + "main_status.feeder_variant", block + "feeder",
              block + "feeder.empty", block + "feeder_width", block + "feeder_height",
              block + "transparency_unit", block + "transparency_unit_width"});
  CHECK(told.Packet(6) == "0x20|1|0xc8|1|5100|8400|0x00|0");
}

TEST_CASE("the parameters of the scan") {
  const Dissection told =
      Fields({"pmddb832.colour_mode.colour_mode", "pmddb832.brightness.brightness",
              "pmddb832.scan_area.left", "pmddb832.scan_area.top", "pmddb832.scan_area.width",
              "pmddb832.scan_area.height", "pmddb832.lines_per_block.lines_per_block"});
  CHECK(told.Packet(9) == "0x13||||||");
  CHECK(told.Packet(13) == "|-2|||||");
  CHECK(told.Packet(17) == "||8|24|100|40|");
  CHECK(told.Packet(21) == "||||||16");
}

TEST_CASE("block headers and blocks") {
  const std::string header = "pmddb832.block_header.";
  const std::string block = "pmddb832.block.";
  const Dissection told =
      Fields({header + "line", header + "lines", header + "status.last_block", block + "number",
              block + "count", block + "lines", block + "status"});
  CHECK(told.Packet(24) == "100|16|0||||");
  CHECK(told.Packet(25) == "|||1|3|16|0x00");
  CHECK(told.Packet(28) == "|||2|3|16|0x00");
  CHECK(told.Packet(30) == "100|8|1||||");
  CHECK(told.Packet(31) == "|||3|3|8|0x20");
}

TEST_CASE("a NAK is an error, and says to what") {
  const Dissection told =
      Fields({"pmddb832.control", "pmddb832.answer", "_ws.expert.message", "_ws.col.Info"});
  CHECK(told.Packet(32).starts_with("0x0c||"));
  CHECK(told.Packet(33) == "|0x15|The scanner did not acknowledge|NAK");
}

// The parameters of one command, behind its acknowledge.
std::string Parameter(char letter, const Bytes& bytes, const std::string& field) {
  SampleConversation sample;
  sample.Command({0x1B, static_cast<std::uint8_t>(letter)}, bytes);
  return Dissection(sample.capture, {"pmddb832." + field}).Packet(3);
}

TEST_CASE("parameters of one byte") {
  CHECK(Parameter('B', {0x80}, "halftone.halftone_code") == "0x80");
  CHECK(Parameter('D', {12}, "data_format.bits_per_sample") == "12");
  CHECK(Parameter('Z', {0x20}, "gamma_code.gamma_code") == "0x20");
  CHECK(Parameter('e', {1}, "option_unit.option_unit") == "0x01");
  CHECK(Parameter('p', {0x48}, "focus_position.focus_position") == "0x48");
}

TEST_CASE("parameters of several bytes") {
  CHECK(Parameter('R', {0x2C, 1, 0x58, 2}, "resolution.main_resolution") == "300");
  CHECK(Parameter('H', {100, 50}, "zoom.sub_zoom") == "50");
  CHECK(Parameter('z', pmddb832::tests::Joined({'G'}, pmddb832::tests::Repeated(256, 7)),
                  "gamma_table.channel") == "0x47");
}

TEST_CASE("lines that come one by one have a header of four bytes each") {
  SampleConversation sample;
  sample.Command({0x1B, 'A'}, {0, 0, 0, 0, 100, 0, 2, 0}).Write({0x1B, 'G'});
  sample.Read({0x02, 0x00, 100, 0, 1, 0}).Read({0x02, 0x00, 100, 0});
  sample.Read(Bytes(100, 0)).Write({0x06}).Read({0x02, 0x20, 100, 0}).Read(Bytes(100, 0));
  const Dissection told = pmddb832::tests::Summaries(sample.capture);
  CHECK(told.Packet(8) == "block 1 of 2, 1 line, 100 bytes, status ok");
  CHECK(told.Packet(11) == "block 2 of 2, 1 line, 100 bytes, status ok, last block");
}

}  // namespace
