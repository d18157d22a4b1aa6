#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "simulator/standard/standard_scanner.h"
#include "tests/simulator/simulator_conversation.h"

namespace simulator_test {

// A flatbed of 200 x 200 pixels at 100 dpi (lists 50 and 100 dpi) with Pattern(200, 200) on it.
simulator::StandardScannerConfig SmallStandard(std::string_view level = "B8");

// The same with a document feeder of 96 x 150 pixels and so many pages of about that size.
simulator::StandardScannerConfig SmallStandardFeeder(std::size_t pages);

// What a driver sets before a scan. The numbers are those of the commands.
struct StandardScan {
  std::uint8_t colorMode = 0;
  std::uint8_t bits = 8;
  std::uint16_t resolution = 100;
  std::uint8_t zoom = 100;
  std::uint16_t left = 0;
  std::uint16_t top = 0;
  std::uint16_t width = 16;
  std::uint16_t height = 10;
  std::uint8_t linesPerBlock = 4;  // 0: line mode

  // The parameters of ESC A.
  Bytes Area() const;
};

// What Upload sends of it, and what it is answered, as a conversation; then with the option unit.
inline const std::string kUpload =
    "> 1B 43 < 06 > 00 < 06 > 1B 44 < 06 > 08 < 06 > 1B 52 < 06 > 64 00 64 00 < 06"
    "> 1B 48 < 06 > 64 64 < 06 > 1B 41 < 06 > 00 00 00 00 10 00 0A 00 < 06"
    "> 1B 64 < 06 > 04 < 06";
inline const std::string kUploadOption = "> 1B 65 < 06 > 01 < 06" + kUpload;

void Play(const simulator::StandardScannerConfig& config, std::string_view conversation);

// Sends ESC C, D, R, H, A and, unless in line mode, d; each acknowledged.
void Upload(simulator::Scanner& scanner, const StandardScan& scan);

// ESC G and all blocks behind it, acknowledged; returns the lines without headers.
Bytes StandardScanAll(simulator::Scanner& scanner, bool lineMode = false);

// The letter of a command, answered with ACK, and its parameters, answered with `answer`.
void CheckParameters(simulator::Scanner& scanner, char letter, std::string_view parameters,
                     std::string_view answer);

}  // namespace simulator_test
