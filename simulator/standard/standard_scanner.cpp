#include "simulator/standard/standard_scanner.h"

#include <array>
#include <utility>

#include "simulator/device/command_table.h"
#include "simulator/device/protocol_bytes.h"
#include "simulator/device/status_bits.h"

// The standard scanner's commands: which there are, and the small ones.

namespace simulator {

// A command has a handler, or parameters that are kept; without a check every value is possible.
struct StandardScanner::Row {
  std::uint8_t prefix;
  char letter;
  std::uint32_t parameterBytes;
  char lowestLevel;  // the digit of the lowest B level that knows it
  bool levelA;       // A5 knows it
  Handler handler;
  Check check;
};

template <int kLowest, int kHighest>
std::string StandardScanner::WhyOutOfRange(Bytes value) const {
  const auto number = static_cast<std::int8_t>(value[0]);
  if (number >= kLowest && number <= kHighest) return {};
  return std::to_string(number) + " is not in " + std::to_string(kLowest) + " to " +
         std::to_string(kHighest);
}

const StandardScanner::Row* StandardScanner::FindCommand(std::uint8_t prefix, std::uint8_t letter) {
  using S = StandardScanner;
  // clang-format off
  static constexpr std::array kCommands{
      // prefix letter bytes level A5
      Row{kEscape, '?',   0, '0', true,  &S::TellProduct,     nullptr},
      Row{kEscape, '@',   0, '0', true,  &S::Reset,           nullptr},
      Row{kEscape, 'A',   8, '0', true,  nullptr,             &S::WhyNoArea},
      Row{kEscape, 'B',   1, '0', true,  nullptr,             &S::WhyNoHalftone},
      Row{kEscape, 'C',   1, '0', true,  nullptr,             &S::WhyNoColorMode},
      Row{kEscape, 'D',   1, '0', true,  nullptr,             &S::WhyNoDepth},
      Row{kEscape, 'F',   0, '0', true,  &S::TellCondition,   nullptr},
      Row{kEscape, 'G',   0, '0', true,  &S::StartTransfer,   nullptr},
      Row{kEscape, 'H',   2, '0', true,  nullptr,             &S::WhyNoZoom},
      Row{kEscape, 'I',   0, '0', true,  &S::TellLevel,       nullptr},
      Row{kEscape, 'K',   1, '5', true,  nullptr,             &S::WhyOutOfRange<0, 1>},
      Row{kEscape, 'L',   1, '0', true,  nullptr,             &S::WhyOutOfRange<-3, 3>},
      Row{kEscape, 'M',   1, '0', false, nullptr,             &S::WhyNoCorrection},
      Row{kEscape, 'Q',   1, '4', true,  nullptr,             &S::WhyOutOfRange<-2, 2>},
      Row{kEscape, 'R',   4, '0', true,  nullptr,             &S::WhyNoResolution},
      Row{kEscape, 'Z',   1, '0', true,  nullptr,             &S::WhyNoGamma},
      Row{kEscape, 'd',   1, '4', true,  nullptr,             &S::WhyNoBlock},
      Row{kEscape, 'e',   1, '0', true,  &S::ChooseSource,    nullptr},
      Row{kEscape, 'f',   0, '4', true,  &S::TellStatus,      nullptr},
      Row{kEscape, 'g',   1, '4', true,  nullptr,             nullptr},
      Row{kEscape, 'm',   9, '4', false, &S::TakeColorMatrix, nullptr},
      Row{kEscape, 'p',   1, '8', false, &S::Focus,           nullptr},
      Row{kEscape, 'q',   0, '8', false, &S::TellFocus,       nullptr},
      Row{kEscape, 's',   1, '6', true,  nullptr,             &S::WhyOutOfRange<0, 2>},
      Row{kEscape, 't',   1, '8', false, nullptr,             nullptr},
      Row{kEscape, 'z', 257, '4', true,  &S::TakeTable,       nullptr},
  };
  // clang-format on
  return FindCommandRow(kCommands, prefix, letter);
}

StandardScanner::StandardScanner(StandardScannerConfig config)
    : PageScanner(std::move(static_cast<Equipment&>(config)), config.manners,
                  (config.identity.feederFlags & status_bits::kFeederVariant) != 0),
      identity_(std::move(config.identity)) {}

std::optional<std::uint32_t> StandardScanner::ParameterBytes(std::uint8_t prefix,
                                                             std::uint8_t letter) const {
  const Row* const row = FindCommand(prefix, letter);
  if (row == nullptr) return std::nullopt;
  const bool known = IsLevelA() ? row->levelA : LevelDigit() >= row->lowestLevel;
  return known ? std::optional(row->parameterBytes) : std::nullopt;
}

void StandardScanner::Execute(std::uint8_t prefix, std::uint8_t letter, Bytes parameters) {
  const Row& row = *FindCommand(prefix, letter);
  if (row.handler != nullptr) {
    (this->*row.handler)(parameters);
  } else {
    TakeParameters(row, parameters);
  }
}

void StandardScanner::TakeParameters(const Row& row, Bytes parameters) {
  const std::string reason = row.check == nullptr ? "" : (this->*row.check)(parameters);
  if (!reason.empty()) {
    accepted_.erase(row.letter);
    Refuse(std::string("ESC ") + row.letter + ": " + reason);
    return;
  }
  accepted_[row.letter].assign(parameters.begin(), parameters.end());
  Apply(row.letter);
  Answer(kAck);
}

void StandardScanner::Reset(Bytes) {
  accepted_.clear();
  gamma_ = {};
  startRefused_ = false;
  Forget();
}

// Level A has one gamma table for all channels.
void StandardScanner::TakeTable(Bytes selectorAndTable) {
  if (IsLevelA() && selectorAndTable[0] != 'M') {
    Refuse("level A has no gamma table of a channel");
  } else {
    TakeGammaTable(selectorAndTable);
  }
}

// The area is in pixels of the source and the resolution that were chosen before it.
void StandardScanner::ChooseSource(Bytes value) {
  accepted_.erase('A');
  SwitchOption(value);
}

// Level A moves its paper whatever the source was, so that there may be none to eject.
void StandardScanner::EjectPage() {
  if (IsLevelA() && !source.IsFeeder()) {
    AcknowledgeEject();
  } else {
    PageScanner::EjectPage();
  }
}

}  // namespace simulator
