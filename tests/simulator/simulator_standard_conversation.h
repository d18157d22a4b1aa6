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

// The upload of 16 x 10 pixels at 100 dpi in grey of 8 bits, 4 lines a block, as a conversation;
// with these commands in place of their namesakes, or behind them: "C 13, K 01". "-d" leaves a
// command out: that is line mode.
std::string Upload(std::string_view changes = "");
const std::string kUploadOption = "+ e 01" + Upload();

// ESC G and all blocks behind it, acknowledged; returns the lines without headers.
Bytes StandardScanAll(simulator::Scanner& scanner, bool lineMode = false);

}  // namespace simulator_test
