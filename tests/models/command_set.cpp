#include "tests/models/command_set.h"

#include <algorithm>
#include <string_view>

namespace pmddb832::models {
namespace {

constexpr std::size_t kNameBytes = 8;
constexpr char kMakersName[] = "ORVAN  ";

// The models by the host's name for each. One is written with another name, on purpose.
constexpr std::string_view kModels[] = {
    "QM43000", "QM2700",  "QM1000", "QM2500", "QM5500", "QM6500", "QM6000", "RV5000",
    "QM5700",  "QM1700",  "QM1600", "QM8700", "QM3200", "QM8600", "RV3100", "QM41000",
    "RV7000H", "RV6000H", "RV5200", "WX4500", "WX4000", "HK300"};

// The lowest level digit that has each halftone, and its code.
struct Halftone {
  std::uint8_t code;
  int lowestDigit;
};
constexpr Halftone kHalftones[] = {{0x01, 1}, {0x00, 1}, {0x10, 1}, {0x20, 1}, {0x80, 4},
                                   {0x90, 4}, {0xA0, 4}, {0xB0, 4}, {0x03, 5}, {0x00, 6}};

}  // namespace

bool CommandSet::SendEsc(char letter) {
  if (letter == 'G') {
    paperFed_ = false;
    scanStarted_ = true;
  }
  return OnWire().Write({0x1B, static_cast<std::uint8_t>(letter)});
}

bool CommandSet::CheckAck() {
  std::uint8_t answer[1] = {0};
  return OnWire().Read(answer) && answer[0] == 0x06;
}

// A cancel is itself acknowledged.
bool CommandSet::Cancel() {
  return OnWire().Write({0x18}) && CheckAck();
}

bool CommandSet::SendParameters(char letter, const Bytes& parameters) {
  return SendEsc(letter) && CheckAck() && OnWire().Write(parameters) && CheckAck();
}

bool CommandSet::SendTable(char selector, std::size_t offsetInRecord) {
  Bytes block{static_cast<std::uint8_t>(selector)};
  const auto table = Settings().bytes.begin() + static_cast<std::ptrdiff_t>(offsetInRecord);
  block.insert(block.end(), table, table + 256);
  return SendParameters('z', block);
}

bool CommandSet::SendColorMatrix() {
  const auto matrix = Settings().bytes.begin() + kColorMatrix;
  return SendParameters('m', Bytes(matrix, matrix + 9));
}

// Fed are only pages behind which none waits in the scanner.
bool CommandSet::FeedPaper() {
  if (paperFed_ && !scanStarted_) return false;
  if (!OnWire().Write({0x19}) || !CheckAck()) return false;
  paperFed_ = true;
  scanStarted_ = false;
  return true;
}

// Ejected is only a page that was scanned, and not fed.
bool CommandSet::EjectPage() {
  if (paperFed_ || !scanStarted_) return false;
  if (!OnWire().Write({0x0C}) || !CheckAck()) return false;
  scanStarted_ = false;
  return true;
}

bool CommandSet::ResetScanner() {
  paperFed_ = scanStarted_ = false;
  return SendEsc('@') && CheckAck();
}

void CommandSet::Repaint() {
  if (Settings()[kProgressWindow] != nullptr) OnWire().Repaint();
}

// On the wire a position is 0x40 higher than the host's, in 8 bits.
std::uint8_t CommandSet::SetFocus(std::uint32_t mode, std::uint8_t position) {
  if (Settings()[kCommandLevel] != 8) return position;
  const std::uint8_t found = Focus(mode != 0, Low8(position + 0x40u));
  return found == 0xFF ? 0x9C : Low8(found - 0x40u);
}

std::uint8_t CommandSet::AskFocusPosition() {
  OnWire().Sleep(20000);
  std::array<std::uint8_t, 4> header{};
  if (!SendEsc('q') || !OnWire().Read(header) || header[0] != 0x02) return 0xFF;
  const std::uint16_t count = U16(header, 2);
  // Free choice: data that the room for replies cannot hold are not read.
  if (count > reply_.size() || !OnWire().Read(std::span(reply_).first(count))) return 0xFF;
  // Free choice: a reply without a second byte tells no position.
  return count >= 2 && (reply_[0] & 0x01) == 0 ? reply_[1] : 0xFF;
}

std::uint8_t CommandSet::GammaCode() const {
  switch (Settings()[kGamma]) {
    case 100:
      return 0x01;
    case 300:
      return 0x00;
    case 280:
      return 0x10;
    case 250:
      return 0x20;
    default:
      return 0x02;  // 220, and all that are not listed
  }
}

std::uint8_t CommandSet::HalftoneCode() const {
  const std::int32_t row = Settings()[kHalftoneIndex];
  return kHalftones[row >= 0 && row < 10 ? row : 0].code;  // free choice: row 0 for no row
}

std::uint8_t CommandSet::DropoutCode() const {
  const std::uint16_t channel = Settings()[kDropoutChannel];
  return channel >= 1 && channel <= 3 ? Low8(channel * 0x10u) : 0x00;
}

std::uint16_t CommandSet::CountHalftones() const {
  const int digit = static_cast<signed char>(Settings()[kLevelDigit]) - '0';
  std::uint16_t count = 0;
  while (count < 10 && kHalftones[count].lowestDigit <= digit) ++count;
  return count;
}

std::string CommandSet::StoreProductName(std::span<const std::uint8_t> reply) const {
  std::string name;
  for (std::size_t i = 0; i < 16 && reply[i] != 0; ++i) name += static_cast<char>(reply[i]);
  const bool nameless = name.empty();
  name.resize(16, ' ');
  if (nameless) name[0] = '\0';  // the first character is never made a blank
  std::copy_n(name.c_str(), 17, Settings().bytes.begin() + kProductNameReply);
  return name;
}

bool CommandSet::WriteKnownModel() const {
  const std::string_view id = Settings().Text(kModelId);
  if (std::find(std::begin(kModels), std::end(kModels), id) == std::end(kModels)) return false;
  Settings().SetText(kModelName, id == "QM6000" ? "QM60000" : id.data(), kNameBytes);
  return true;
}

void CommandSet::WriteOtherModel() const {
  const std::string id = Settings().Text(kModelId);
  Settings().SetText(kModelName, id.empty() ? kMakersName : id.c_str(), kNameBytes);
}

void CommandSet::StoreLevelGroup() const {
  const std::uint32_t level = Settings()[kCommandLevel];
  Settings().Set(kLevelGroup, level == 1 ? 4 : level >= 2 && level <= 4 ? 5 : 6);
}

}  // namespace pmddb832::models
