#include <string_view>

#include "tests/models/extended_set.h"

// Opening a scanner of the extended family, and what it tells of itself and of its condition.

namespace pmddb832::models {

bool ExtendedSet::Open() {
  opened_ = Identify();
  return opened_;
}

void ExtendedSet::Close() {
  opened_ = false;
}

bool ExtendedSet::SendFs(char letter) {
  if (letter == 'G') {
    paperFed_ = false;
    scanStarted_ = true;
  }
  return OnWire().Write({0x1C, static_cast<std::uint8_t>(letter)});
}

// Free choice: an identity that was not read whole, or has no basic resolution to divide by, does
// not take the place of the one before.
bool ExtendedSet::ReadIdentity(bool& isUsable) {
  auto told = identity_;
  if (!SendFs('I') || !OnWire().Read(told)) return false;
  isUsable = U32(told, 4) != 0;
  if (isUsable) identity_ = told;
  return isUsable;
}

bool ExtendedSet::ReadStatus() {
  return SendFs('F') && OnWire().Read(status_);
}

bool ExtendedSet::Identify() {
  if (!ResetScanner()) return false;
  bool isUsable = true;
  if (!ReadIdentity(isUsable)) {
    if (!isUsable) error_ = 7;
    return false;
  }
  Settings().Set(kScanInfoVariant, 3);
  StoreResolutions();
  if (!StoreLevel()) {
    error_ = 10;
    return false;
  }
  if (!StoreOptions()) {
    error_ = 7;
    return false;
  }
  StoreModelName();
  StoreAreas();
  StoreLevelGroup();
  return true;
}

void ExtendedSet::StoreResolutions() {
  const std::uint16_t least = Low16(U16(identity_, 8) * 2u);
  const std::uint16_t base = U16(identity_, 4);
  const std::uint16_t most = Low16(U16(identity_, 12) >> 1);
  Settings().Set(kMinResolution, least);
  Settings().Set(kMinResolutionCopy, least);
  Settings().Set(kBaseResolution, base);
  Settings().Set(kBaseResolutionCopy, base);
  Settings().Set(kMaxResolution, most);
  Settings().Set(kMaxResolutionCopy, most);
}

bool ExtendedSet::StoreLevel() {
  const char letter = static_cast<char>(identity_[0]), digit = static_cast<char>(identity_[1]);
  Settings().Set(kLevelLetter, letter);
  Settings().Set(kLevelDigit, digit);
  Settings().Set(kLevelEnd, '\0');
  constexpr std::string_view kDigits = "345678";
  constexpr std::uint32_t kCodes[] = {1, 2, 3, 6, 7, 8};
  const std::size_t row = kDigits.find(digit);
  const bool known = letter == 'B' && row != std::string_view::npos;
  Settings().Set(kCommandLevel, known ? kCodes[row] : 0);
  return known;
}

ExtendedSet::Size ExtendedSet::SizeAt(std::size_t offset) const {
  return {U32(identity_, offset), U32(identity_, offset + 4)};
}

// The lowest level has no status: its option is what the record had before, its areas are empty.
bool ExtendedSet::StoreOptions() {
  Record& settings = Settings();
  if (settings[kCommandLevel] <= 1) return true;
  if (!ReadStatus()) return false;
  settings.Set(kDocFeedOption, 2);
  flatbed_ = SizeAt(20);
  if ((status_[1] & 0x80) != 0) {
    settings.Set(kDocFeedOption, 0);
    option_ = SizeAt(28);
    const std::uint8_t flags = identity_[44];
    const bool variant = (flags & 0x20) != 0;
    const bool extra = (flags & 0x08) != 0 || std::string_view(settings.Text(kModelId)) == "RV3100";
    settings.Set(kMainStatusBit5, variant);
    settings.Set(kMainStatusBit4, variant && (flags & 0x10) != 0);
    settings.Set(kFeederStatusExtra, variant && extra);
  } else if ((status_[2] & 0x80) != 0) {
    settings.Set(kDocFeedOption, 1);
    option_ = SizeAt(36);
  }
  return true;
}

// Of the three models that are known by their product name only one leaves a trace: its deep
// samples have 14 bits. None of the three gets a name.
void ExtendedSet::StoreModelName() {
  const std::string name = StoreProductName(std::span(identity_).subspan(46, 16));
  if (WriteKnownModel()) return;
  const bool has14Bits = name == "SCANNER RV-3100 " || name == "Prospectra3140XL";
  if (has14Bits) highBitDepth_ = 14;
  if (has14Bits || name == "SCANNER RV-5000 " || name == "Prospectra3100  " ||
      name == "SCANNER RV-7000 " || name == "RV-700XL        " || name == "SCANNER QM-41000") {
    Settings().SetText(kModelName, "ORVAN  ", 8);
  } else {
    WriteOtherModel();
  }
}

void ExtendedSet::StoreAreas() {
  Record& settings = Settings();
  const std::uint32_t base = U32(identity_, 4);
  settings.Set(kScanSource, 0);
  settings.Set(kHalftoneInfo, CountHalftones());
  settings.Set(kBedWidth, flatbed_.width * 100 / base);
  settings.Set(kBedHeight, flatbed_.height * 100 / base);
  settings.Set(kAreaCount, 1);
  if (settings[kDocFeedOption] != 2) {
    settings.Set(kAreaCount, 2);
    settings.Set(kOptionWidth, option_.width * 100 / base);
    settings.Set(kOptionHeight, option_.height * 100 / base);
  }
  settings.Set(kRangeEnabled, 1);
  settings.Set(kRangeMin, 50);
  settings.Set(kRangeMax, 200);
}

std::uint32_t ExtendedSet::GetOptionStatus(std::uint32_t option) {
  error_ = 0;
  if (!ReadStatus()) return 7;
  if ((status_[0] & 0x40) != 0) return 31;
  if (option == 0 && (status_[1] & 0x40) != 0) {
    if ((status_[1] & 0x02) != 0) return 15;
    if ((status_[1] & 0x04) != 0) return 14;
    if ((status_[1] & 0x08) != 0) return 13;
  }
  if (option == 1 && (status_[2] & 0x42) == 0x42) return 15;
  return (status_[0] & 0x80) != 0 ? 22 : 0;
}

bool ExtendedSet::CheckWarmup() {
  if (!ReadStatus() || (status_[0] & 0x80) != 0) {
    error_ = 22;
    return false;
  }
  if ((status_[0] & 0x02) != 0) {
    error_ = 43;
    return false;
  }
  return true;
}

// Pixels at half the highest resolution.
std::uint32_t ExtendedSet::GetScanPaperSize(std::uint32_t option, std::uint32_t& width,
                                            std::uint32_t& height) {
  bool isUsable = true;
  if (!ReadIdentity(isUsable)) return 7;
  const std::uint32_t base = U32(identity_, 4), most = U32(identity_, 12);
  Size size = flatbed_;
  if (option == 0 && Settings()[kScanSource] != 0) size = option_ = SizeAt(28);
  if (option == 1 && Settings()[kScanSource] != 0) size = SizeAt(36);
  width = size.width * most / 2 / base;
  height = size.height * most / 2 / base;
  return 0;
}

bool ExtendedSet::EnableOption(std::uint32_t value) {
  const std::uint32_t source = Settings()[kDocFeedOption];
  const bool hasOneOption = source == 1 || (source == 0 && Settings()[kMainStatusBit5] == 0);
  if (hasOneOption && value != 0) value = 1;
  if (!SendParameters('e', {Low8(value)})) return false;
  parameters_[26] = Low8(value);
  return true;
}

}  // namespace pmddb832::models
