#pragma once

#include <string>
#include <vector>

#include "capture/file/capture.h"

namespace pmddb832::tests {

// What decode makes of a transfer, in the words of the dissector.
struct DecodedPacket {
  std::vector<std::string> fields;  // of DecodedFields(), as tshark prints them
  bool hasTrouble = false;
  // Something was wrong before in the same command or block: whether this is as well is not told.
  bool isBehindTrouble = false;
};

// Filter names of all that decode tells in numbers and words, each once.
const std::vector<std::string>& DecodedFields();

// The transfers of a capture, in their order.
std::vector<DecodedPacket> DecodedPackets(const capture::Capture& capture);

// What cannot be printed as it is stands for itself in no output.
inline const std::string kUnprintable = "unprintable";

}  // namespace pmddb832::tests
