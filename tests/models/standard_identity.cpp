#include <algorithm>
#include <string_view>

#include "tests/models/standard_set.h"

// Opening a scanner of the standard family, and what it tells of itself.

namespace pmddb832::models {
namespace {

struct NamedModel {
  std::string_view productName;
  const char* model;
  std::uint16_t quirk;  // 1 and 3: resolutions beyond the listed ones, by doubling the last
};
constexpr NamedModel kNamedModels[] = {
    {"SCANNER RV-3000 ", "QM43000", 0}, {"SCANNER QM-43000", "QM43000", 0},
    {"Prospectra936XL ", "QM43000", 0}, {"SCANNER QM-2700 ", "QM2700", 1},
    {"Prospectra900   ", "QM2700", 1},  {"SCANNER RV-5000 ", "RV5000", 3},
    {"Prospectra3100  ", "RV5000", 3}};

}  // namespace

bool StandardSet::Open() {
  receiveSize_ = 65280;
  opened_ = Identify();
  if (!opened_) error_ = 1;  // whatever the reason was
  return opened_;
}

void StandardSet::Close() {
  if (!opened_) return;
  opened_ = false;
  data_.clear();
}

// A header of 4 bytes, STX first and the count of data at its end, then the data. What does not
// come of them stays as the reply before left it. Free choice: the header has a place of its own.
bool StandardSet::ReadReply(char letter, std::uint16_t& count) {
  std::array<std::uint8_t, 4> header{};
  if (!SendEsc(letter) || !OnWire().Read(header)) return false;
  if (header[0] != 0x02) {
    error_ = 7;
    return false;
  }
  count = U16(header, 2);
  // Free choice: data that the 150 bytes for replies cannot hold are not read.
  return count <= reply_.size() && OnWire().Read(std::span(reply_).first(count));
}

bool StandardSet::Identify() {
  if (!ResetScanner()) return false;
  scanActive_ = false;
  StoreModelName();
  std::uint16_t count = 0;
  if (!ReadReply('I', count) || !StoreResolutions(count) || !StoreLevel() || !StoreOptions()) {
    return false;
  }
  StoreModelName();
  StoreAreas();
  StoreLevelGroup();
  return true;
}

// Two level characters, three bytes a resolution, a mark, the area at the last of them.
bool StandardSet::StoreResolutions(std::uint16_t count) {
  Record& settings = Settings();
  const std::size_t listed = count < 7 ? 0 : (count - 7u) / 3;
  // Free choice: a last resolution of 0, listed or doubled, is not to be used.
  if (listed == 0 || Low16(U16(reply_, 3 * listed) * (quirk_ != 0 ? 2u : 1u)) == 0) return false;
  resolutions_.clear();
  for (std::size_t i = 0; i < listed; ++i) resolutions_.push_back(U16(reply_, 3 + 3 * i));
  const std::uint16_t last = resolutions_.back();
  settings.Set(kMinResolution, resolutions_[0]);
  settings.Set(kMinResolutionCopy, resolutions_[0]);
  settings.Set(kBaseResolution, last);
  settings.Set(kMaxResolutionCopy, last);
  settings.Set(kBaseResolutionCopy, last >> 2);
  settings.Set(kScanInfoVariant, 2);
  areas_[0] = {U16(reply_, 3 + 3 * listed), U16(reply_, 5 + 3 * listed)};
  if (quirk_ != 0) {
    resolutions_.push_back(Low16(last * 2u));
    settings.Set(kBaseResolution, resolutions_.back());
    areas_[0] = {areas_[0].width * 2, areas_[0].height * 2};
  }
  optionKind_ = 2;
  return true;
}

bool StandardSet::StoreLevel() {
  Record& settings = Settings();
  const char letter = static_cast<char>(reply_[0]);
  const auto digit = static_cast<signed char>(reply_[1]);
  settings.Set(kLevelLetter, letter);
  settings.Set(kLevelDigit, static_cast<char>(digit));
  settings.Set(kLevelEnd, '\0');
  if (digit <= '2') return false;
  level_ = 0;
  if (letter == 'A' && digit == '5') level_ = 4;
  if (letter == 'B') {
    constexpr std::uint32_t kCodes[] = {1, 2, 3, 6, 7, 8};
    level_ = digit <= '8' ? kCodes[digit - '3'] : 6;
  }
  settings.Set(kCommandLevel, level_);
  return level_ != 0;
}

StandardSet::Size StandardSet::SizeAt(std::size_t offset) const {
  const std::uint32_t times = quirk_ != 0 ? 2 : 1;
  return {U16(reply_, offset) * times, U16(reply_, offset + 2) * times};
}

bool StandardSet::StoreOptions() {
  Record& settings = Settings();
  if (level_ > 1) {
    if (!ReadStatus()) return false;
    const std::uint8_t main = reply_[4];
    if ((reply_[5] & 0x80) != 0) {
      optionKind_ = 0;
      areas_[1] = areas_[2] = SizeAt(6);
      settings.Set(kMainStatusBit5, (main & 0x20) != 0);
      settings.Set(kMainStatusBit4, (main & 0x30) == 0x30);
      settings.Set(kFeederStatusExtra, 0);
    } else if ((reply_[10] & 0x80) != 0) {
      optionKind_ = 1;
      areas_[1] = SizeAt(11);
    }
    settings.Set(kDocFeedOption, optionKind_);
  }
  return true;
}

void StandardSet::StoreModelName() {
  if (!NameModel()) Settings().SetText(kModelName, "ORVAN  ", 8);
}

bool StandardSet::NameModel() {
  std::uint16_t count = 0;
  if (!ReadReply('?', count)) return false;
  // Free choice: a shorter reply has a shorter name.
  Bytes product(reply_.begin() + 8, reply_.begin() + std::clamp<int>(count, 8, 24));
  product.resize(16);
  const std::string name = StoreProductName(product);
  if (WriteKnownModel()) return true;
  for (const NamedModel& named : kNamedModels) {
    if (named.productName != name) continue;
    Settings().SetText(kModelName, named.model, 8);
    quirk_ = named.quirk;
    return true;
  }
  WriteOtherModel();
  return true;
}

// In 1/100 inch, of which the record gets the low 16 bits.
void StandardSet::StoreArea(const Size& area, Field<std::uint32_t> width,
                            Field<std::uint32_t> height) {
  const std::uint32_t last = resolutions_.back();
  Settings().Set(width, Low16(area.width * 100 / last));
  Settings().Set(height, Low16(area.height * 100 / last));
}

void StandardSet::StoreAreas() {
  Record& settings = Settings();
  settings.Set(kScanSource, 0);
  settings.Set(kHalftoneInfo, CountHalftones());
  settings.Set(kAreaCount, 1);
  StoreArea(areas_[0], kBedWidth, kBedHeight);
  if (settings[kDocFeedOption] != 2) {
    settings.Set(kAreaCount, 2);
    StoreArea(areas_[1], kOptionWidth, kOptionHeight);
  }
  settings.Set(kRangeEnabled, 1);
  settings.Set(kRangeMin, 50);
  settings.Set(kRangeMax, 200);
}

// The data lie behind the header. Free choice: what does not come of a status is 0, and all of it
// for levels without the command.
bool StandardSet::ReadStatus() {
  reply_.fill(0);
  if (level_ < 2) return true;
  if (!SendEsc('f') || !OnWire().Read(std::span(reply_).first(4)) || reply_[0] != 0x02)
    return false;
  const std::uint16_t count = U16(reply_, 2);
  return count <= reply_.size() - 4 && OnWire().Read(std::span(reply_).subspan(4, count));
}

bool StandardSet::CheckWarmup() {
  if (!ReadStatus() || (reply_[4] & 0x80) != 0) {
    error_ = 22;
    return false;
  }
  if ((reply_[4] & 0x02) != 0) {
    error_ = 43;
    return false;
  }
  return true;
}

std::uint32_t StandardSet::GetOptionStatus(std::uint32_t option) {
  error_ = 0;
  if (!ReadStatus()) return 7;
  const std::uint8_t feeder = reply_[5], transparency = reply_[10];
  if (option == 0 && (feeder & 0x40) != 0) {
    return (feeder & 0x02) != 0 ? 15 : (feeder & 0x04) != 0 ? 14 : (feeder & 0x08) != 0 ? 13 : 0;
  }
  if (option == 1 && (transparency & 0x40) != 0) return (transparency & 0x02) != 0 ? 15 : 0;
  if (option > 2) return 0;
  return ((reply_[1] | reply_[4]) & 0x80) != 0 ? 22 : 0;
}

std::uint32_t StandardSet::GetScanPaperSize(std::uint32_t option, std::uint32_t& width,
                                            std::uint32_t& height) {
  if (!ReadStatus()) return 7;
  Size size = areas_[option == 2 ? 0 : 1];
  if (option == 0 && (reply_[5] & 0x40) != 0) {
    size = areas_[1] = areas_[2] = SizeAt(6);
  } else if (option <= 1 && (reply_[10] & 0x40) != 0) {
    size = SizeAt(11);
  }
  width = size.width;
  height = size.height;
  return 0;
}

bool StandardSet::EnableOption(std::uint32_t value) {
  if (Settings()[kDocFeedOption] == 1 && value != 0) value = 1;
  return SendParameters('e', {Low8(value)});
}

}  // namespace pmddb832::models
