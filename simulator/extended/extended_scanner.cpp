#include "simulator/extended/extended_scanner.h"

#include <array>
#include <utility>

#include "simulator/device/command_table.h"
#include "simulator/device/protocol_bytes.h"
#include "simulator/device/status_bits.h"
#include "simulator/extended/extended_blocks.h"

// The extended scanner's commands.

namespace simulator {

struct ExtendedScanner::Row {
  std::uint8_t prefix;
  char letter;
  std::uint32_t parameterBytes;
  char lowestLevel;  // the second character of the command level
  Handler handler;
};

const ExtendedScanner::Row* ExtendedScanner::FindCommand(std::uint8_t prefix, std::uint8_t letter) {
  using E = ExtendedScanner;
  static constexpr std::array kCommands{
      Row{kEscape, '@', 0, '0', &E::Reset},
      Row{kEscape, 'I', 0, '0', &E::TellLevel},
      Row{kEscape, 'e', 1, '0', &E::SwitchOption},
      Row{kEscape, 'm', 9, '0', &E::TakeColorMatrix},
      Row{kEscape, 'p', 1, '8', &E::Focus},
      Row{kEscape, 'q', 0, '8', &E::TellFocus},
      Row{kEscape, 'z', 257, '0', &E::TakeGammaTable},
      Row{kFileSeparator, 'F', 0, '0', &E::TellStatus},
      Row{kFileSeparator, 'G', 0, '0', &E::StartTransfer},
      Row{kFileSeparator, 'I', 0, '0', &E::TellIdentity},
      Row{kFileSeparator, 'W', parameter_block::kBytes, '0', &E::TakeParameters},
  };
  return FindCommandRow(kCommands, prefix, letter);
}

ExtendedScanner::ExtendedScanner(ExtendedScannerConfig config)
    : PageScanner(std::move(static_cast<Equipment&>(config)), config.manners,
                  (config.identity.feederFlags & status_bits::kFeederVariant) != 0),
      identity_(std::move(config.identity)),
      manners_(config.manners) {}

std::optional<std::uint32_t> ExtendedScanner::ParameterBytes(std::uint8_t prefix,
                                                             std::uint8_t letter) const {
  const Row* const row = FindCommand(prefix, letter);
  if (row == nullptr || identity_.level.at(1) < row->lowestLevel) return std::nullopt;
  return row->parameterBytes;
}

void ExtendedScanner::Execute(std::uint8_t prefix, std::uint8_t letter, Bytes parameters) {
  (this->*FindCommand(prefix, letter)->handler)(parameters);
}

void ExtendedScanner::Reset(Bytes) {
  request_.reset();
  Forget();
}

}  // namespace simulator
