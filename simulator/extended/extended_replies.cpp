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
    return pixels * identity.maxResolution / identity.basicResolution;
  };
  const std::uint8_t status = manners.knowsExtendedCommands ? kExtendedCommandsKnown : 0;
  TellLevelData(
      status, LevelReply(identity.level, UsualResolutions(identity.maxResolution),
                         {atHighest(identity.flatbed.width), atHighest(identity.flatbed.height)}));
}

void ExtendedScanner::TellIdentity(Bytes) {
  using namespace identity_block;
  std::array<std::uint8_t, kBytes> block{};
  std::copy_n(identity.level.begin(), 2, block.begin() + kLevel);
  Put32(block, kBasicResolution, identity.basicResolution);
  Put32(block, kMinResolution, identity.minResolution);
  Put32(block, kMaxResolution, identity.maxResolution);
  Put32(block, kFlatbedWidth, identity.flatbed.width);
  Put32(block, kFlatbedHeight, identity.flatbed.height);
  Put32(block, kFeederWidth, identity.feeder.width);
  Put32(block, kFeederHeight, identity.feeder.height);
  Put32(block, kTransparencyWidth, identity.transparencyUnit.width);
  Put32(block, kTransparencyHeight, identity.transparencyUnit.height);
  block[kFeederFlags] = identity.feederFlags;
  std::copy_n(identity.productName.begin(),
              std::min(identity.productName.size(), kProductNameBytes),
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
