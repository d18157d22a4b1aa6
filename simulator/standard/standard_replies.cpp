#include <algorithm>
#include <vector>

#include "simulator/device/level_reply.h"
#include "simulator/device/little_endian.h"
#include "simulator/device/status_bits.h"
#include "simulator/standard/standard_blocks.h"
#include "simulator/standard/standard_scanner.h"

// What the standard scanner tells of itself: level, product name, condition and status.

namespace simulator {
namespace {

void AppendUnit(std::vector<std::uint8_t>& data, std::uint8_t status, PixelSize area) {
  const bool fitted = (status & status_bits::kInstalled) != 0;
  data.push_back(status);
  Append16(data, fitted ? area.width : 0);
  Append16(data, fitted ? area.height : 0);
}

}  // namespace

void StandardScanner::TellLevel(Bytes) {
  TellLevelData(0, LevelReply(identity_.level, identity_.resolutions, identity_.flatbed));
}

// The level, zeros and the name.
void StandardScanner::TellProduct(Bytes) {
  using namespace product_reply;
  std::vector<std::uint8_t> data(identity_.level.begin(), identity_.level.end());
  data.resize(kNameOffset);
  const std::string name = identity_.productName.substr(0, kNameBytes);
  data.insert(data.end(), name.begin(), name.end());
  data.resize(kNameOffset + kNameBytes);
  AnswerInformation(0, data, defects.replyWithoutStx);
}

// ESC F: the main status alone, in the place of a header's status byte.
void StandardScanner::TellCondition(Bytes) {
  if (defects.statusUnreadable) {
    ExcuseReading();
    return;
  }
  AnswerInformation(MainStatus(), {}, defects.replyWithoutStx);
  if (!KnowsStatus()) CountStatusPoll();
}

// ESC f: main status, and status and area of each option unit.
void StandardScanner::TellStatus(Bytes) {
  if (defects.statusUnreadable) {
    ExcuseReading();
    return;
  }
  constexpr int kFlags = status_bits::kFeederVariant | status_bits::kSecondFeederCapability;
  const int flags = source.HasFeeder() ? identity_.feederFlags & kFlags : 0;
  std::vector<std::uint8_t> data{static_cast<std::uint8_t>(MainStatus() | flags)};
  AppendUnit(data, source.FeederStatus(), identity_.feeder);
  AppendUnit(data, source.TransparencyStatus(), identity_.transparencyUnit);
  AnswerInformation(MainStatus() & status_bits::kFatalError, data, defects.replyWithoutStx);
  CountStatusPoll();
}

}  // namespace simulator
