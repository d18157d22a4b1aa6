#include <algorithm>
#include <array>
#include <vector>

#include "simulator/device/level_reply.h"
#include "simulator/device/little_endian.h"
#include "simulator/extended/extended_blocks.h"
#include "simulator/extended/extended_scanner.h"

// What the extended scanner tells of itself: level, identity and status.

namespace simulator {
namespace {

constexpr std::uint8_t kExtendedCommandsKnown = 0x02;

}  // namespace

void ExtendedScanner::TellLevel(Bytes) {
  const auto atHighest = [&](std::uint32_t pixels) {
    return pixels * identity_.maxResolution / identity_.basicResolution;
  };
  const std::uint8_t status = manners_.knowsExtendedCommands ? kExtendedCommandsKnown : 0;
  TellLevelData(status, LevelReply(identity_.level, UsualResolutions(identity_.maxResolution),
                                   {atHighest(identity_.flatbed.width),
                                    atHighest(identity_.flatbed.height)}));
}

void ExtendedScanner::TellIdentity(Bytes) {
  using namespace identity_block;
  std::array<std::uint8_t, kBytes> block{};
  std::copy_n(identity_.level.begin(), 2, block.begin() + kLevel);
  Put32(block, kBasicResolution, identity_.basicResolution);
  Put32(block, kMinResolution, identity_.minResolution);
  Put32(block, kMaxResolution, identity_.maxResolution);
  Put32(block, kFlatbedWidth, identity_.flatbed.width);
  Put32(block, kFlatbedHeight, identity_.flatbed.height);
  Put32(block, kFeederWidth, identity_.feeder.width);
  Put32(block, kFeederHeight, identity_.feeder.height);
  Put32(block, kTransparencyWidth, identity_.transparencyUnit.width);
  Put32(block, kTransparencyHeight, identity_.transparencyUnit.height);
  block[kFeederFlags] = identity_.feederFlags;
  std::copy_n(identity_.productName.begin(),
              std::min(identity_.productName.size(), kProductNameBytes),
              block.begin() + kProductName);
  Answer(block);
}

void ExtendedScanner::TellStatus(Bytes) {
  if (defects.statusUnreadable) {
    ExcuseReading();
    return;
  }
  std::array<std::uint8_t, status_block::kBytes> block{};
  block[status_block::kMain] = MainStatus();
  block[status_block::kFeeder] = source.FeederStatus();
  block[status_block::kTransparency] = source.TransparencyStatus();
  CountStatusPoll();
  Answer(block);
}

}  // namespace simulator
