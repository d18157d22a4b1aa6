#include <doctest/doctest.h>

#include "tests/capture/sample_conversation.h"
#include "tests/wireshark/wireshark.h"

namespace {

using pmddb832::tests::Dissection;
using pmddb832::tests::ExtendedSample;

// Packets of the sample.
constexpr std::size_t kIdentity = 4;
constexpr std::size_t kStatus = 6;
constexpr std::size_t kMatrix = 9;
constexpr std::size_t kParameters = 13;
constexpr std::size_t kTransferHeader = 16;
constexpr std::size_t kFirstBlock = 17;
constexpr std::size_t kBlockWithoutData = 19;
constexpr std::size_t kFailedBlock = 21;

Dissection Fields(const std::vector<std::string>& fields) {
  return {ExtendedSample().capture, fields};
}

TEST_CASE("every command of an extended scan has its name, and every answer") {
  const Dissection told =
      Fields({"_ws.col.Protocol", "pmddb832.command", "pmddb832.control", "pmddb832.answer"});
  CHECK(told.Packets() == 21);
  CHECK(told.Packet(1) == "PMDDB832|0x1b40||");
  CHECK(told.Packet(2) == "PMDDB832|||0x06");
  CHECK(told.Packet(3) == "PMDDB832|0x1c49||");
  CHECK(told.Packet(5) == "PMDDB832|0x1c46||");
  CHECK(told.Packet(11) == "PMDDB832|0x1c57||");
  CHECK(told.Packet(15) == "PMDDB832|0x1c47||");
  CHECK(told.Packet(18) == "PMDDB832||0x06|");
}

TEST_CASE("the identity's fields") {
  const std::string block = "pmddb832.identity.";
  const Dissection told = Fields(
      {block + "command_level", block + "basic_resolution", block + "minimum_resolution_halved",
       block + "maximum_resolution_doubled", block + "flatbed_width", block + "flatbed_height",
       block + "feeder_width", block + "feeder_height", block + "transparency_unit_width",
       block + "transparency_unit_height", block + "feeder_capabilities", block + "product_name"});
  CHECK(told.Packet(kIdentity) == "B8|600|25|2400|5100|7020|5100|8400|0|0|0x30|SCANNER QM-5500");
}

TEST_CASE("the status's fields, with each bit") {
  const std::string block = "pmddb832.status.";
  const Dissection told =
      Fields({block + "main_status", block + "main_status.warming_up",
              block + "main_status.fatal_error", block + "feeder", block + "feeder.installed",
              block + "feeder.paper_jam", block + "transparency_unit"});
  CHECK(told.Packet(kStatus) == "0x02|1|0|0x80|1|0|0x00");
}

TEST_CASE("where and what of the 64-byte parameter block") {
  const std::string block = "pmddb832.set_parameters.";
  const Dissection told =
      Fields({block + "main_resolution", block + "sub_resolution", block + "area_left",
              block + "area_top", block + "area_width", block + "area_height",
              block + "colour_mode", block + "bits_per_sample", block + "option_unit",
              block + "parameter_g", block + "lines_per_block"});
  CHECK(told.Packet(kParameters) == "300|300|8|24|100|40|0x10|8|0x01|0|16");
}

TEST_CASE("how of the 64-byte parameter block") {
  const std::string block = "pmddb832.set_parameters.";
  const Dissection told =
      Fields({block + "gamma_code", block + "brightness", block + "colour_correction",
              block + "halftone_code", block + "mode_override", block + "enhancement",
              block + "sharpness", block + "mirror", block + "option_parameter"});
  CHECK(told.Packet(kParameters) == "0x02|-2|0x00|0x80|0x6e|2|1|0x01|0x42");
}

TEST_CASE("the colour matrix and the transfer header") {
  const std::string header = "pmddb832.transfer_header.";
  const Dissection told =
      Fields({"pmddb832.colour_matrix.matrix", header + "start_byte", header + "status",
              header + "full_block", header + "full_blocks", header + "last_block"});
  CHECK(told.Packet(kMatrix) == "40fe00004000000040|||||");
  CHECK(told.Packet(kTransferHeader) == "|0x02|0x00|1600|2|800");
}

TEST_CASE("blocks are numbered and counted, and the status is known without the data") {
  const std::string block = "pmddb832.block.";
  const Dissection told = Fields({block + "number", block + "count", block + "lines",
                                  block + "bytes", block + "status", "pmddb832.asked_in"});
  CHECK(told.Packet(kFirstBlock) == "1|3|16|1600|0x00|15");
  CHECK(told.Packet(kBlockWithoutData) == "2|3|16|1600|0x00|15");
  CHECK(told.Packet(kFailedBlock) == "3|3|8|800|0x80|15");
}

TEST_CASE("trouble is an expert information") {
  const Dissection told = Fields({"_ws.expert.message"});
  CHECK(told.Packet(kStatus) == "Main status: warming up");
  CHECK(told.Packet(kFailedBlock) == "The scanner reports trouble");
  CHECK(told.Packet(kBlockWithoutData).find("The data were not kept in the capture") !=
        std::string::npos);
}

TEST_CASE("the host's calls and what is missing are comments of the packets") {
  const Dissection told = Fields({"frame.comment", "frame.len", "frame.cap_len"});
  CHECK(told.Packet(1) == "host calls PMOpenScanner|29|29");
  CHECK(told.Packet(kBlockWithoutData) ==
        "image data not kept: CRC-32 0x12345678, last byte 0x00|1628|27");
}

TEST_CASE("the summary of a packet tells what it says") {
  const Dissection told = pmddb832::tests::Summaries(ExtendedSample().capture);
  CHECK(told.Packet(kIdentity) ==
        "reply to FS I identity: B8, feeder capabilities feeder variant, second capability, "
        "SCANNER QM-5500");
  CHECK(told.Packet(kParameters) ==
        "FS W set parameters: main resolution 300 dpi, area width 100 pixels, area height 40 "
        "lines, bits per sample 8");
  CHECK(told.Packet(kFailedBlock) == "block 3 of 3, 8 lines, 800 bytes, status error");
}

}  // namespace
