#include <algorithm>

#include "tests/models/standard_set.h"

// The settings of a standard scan, as ESC commands with parameters. Refusals are not noticed.

namespace pmddb832::models {
namespace {

Bytes Words(std::initializer_list<std::uint32_t> values) {
  Bytes bytes;
  for (const std::uint32_t value : values) {
    bytes.push_back(Low8(value));
    bytes.push_back(Low8(value >> 8));
  }
  return bytes;
}

}  // namespace

bool StandardSet::CheckStatus() {
  std::array<std::uint8_t, 4> header{};
  return SendEsc('F') && OnWire().Read(header);
}

void StandardSet::UploadSettings() {
  if (!CheckStatus()) return;
  if (optionKind_ != 2) SendParameters('e', {Settings()[kScanSource]});
  if (level_ >= 6 && error_ != 0) return;
  UploadFormat();
  UploadHalftone();
  if (level_ >= 8 && Settings()[kThresholdT] != 0xFFFF) {
    SendParameters('t', {Low8(Settings()[kThresholdT])});
  }
  UploadGamma();
  UploadCorrection();
  if (level_ > 2) SendParameters('K', {Low8(Settings()[kMirrorImage] != 0)});
  if (level_ > 1) {
    SendParameters('Q', {Low8(static_cast<std::uint32_t>(Settings()[kSharpness] / 500))});
    SendParameters('g', {Settings()[kParamG]});
  }
  const std::uint16_t resolution = Settings()[kResolution], zoom = Settings()[kZoom];
  SendParameters('R', Words({resolution, resolution}));
  SendParameters('H', {Low8(zoom), Low8(zoom)});
  UploadArea();
}

void StandardSet::UploadFormat() {
  std::uint8_t mode = colorMode_;
  if (mode == 2 && Settings()[kAltColorMode] == 1) mode = 1;
  if (Settings()[kMonoScan] != 0) mode = DropoutCode();
  SendParameters('C', {mode});
  const bool deep = pixelType_ == 7 || pixelType_ == 8;
  SendParameters('D', {deep ? std::uint8_t{12} : bits_});
}

void StandardSet::UploadHalftone() {
  const bool knowsS = level_ == 4 || level_ >= 6;
  const bool overrides = Settings()[kHalftoneOverride] != 0 && (knowsS || level_ == 3);
  SendParameters('B', {overrides ? std::uint8_t{3} : HalftoneCode()});
  const std::uint8_t optionS = Settings()[kOptionS] == 0 ? 0 : overrides ? 2 : 1;
  if (knowsS) SendParameters('s', {optionS});
}

void StandardSet::UploadGamma() {
  if (level_ > 1 && Settings()[kCustomGamma] != 0) {
    if (level_ != 4 && Settings()[kMonoScan] == 0) {
      SendTable('R', kGammaTableR);
      SendTable('G', kGammaTableG);
      SendTable('B', kGammaTableB);
    } else {
      SendTable('M', kGammaTableR);
    }
    SendParameters('Z', {Settings()[kCustomGammaCode]});
    return;
  }
  SendParameters('Z', {GammaCode()});
  SendParameters('L', {Low8(static_cast<std::uint32_t>(Settings()[kBrightness] / 333))});
}

void StandardSet::UploadCorrection() {
  if (level_ == 4 || Settings()[kMonoScan] != 0) return;
  const bool corrects = level_ > 1 && Settings()[kColorCorrection] != 0;
  if (corrects) SendColorMatrix();
  SendParameters('M', {Low8(corrects)});
}

const StandardSet::Size& StandardSet::SelectedArea() const {
  const std::size_t source = Settings()[kScanSource];
  return areas_[source < 3 ? source : 0];  // free choice beyond 2
}

std::uint32_t StandardSet::MaximumWidth(std::uint16_t resolution) const {
  const double inches = SelectedArea().width * 100.0 / resolutions_.back();  // in 1/100
  const auto pixels = static_cast<std::int64_t>((inches * resolution + 50.0) / 100.0);
  return Down8(static_cast<std::uint32_t>(pixels));
}

std::uint32_t StandardSet::WidestLine() const {
  const std::uint32_t product = std::uint32_t{Settings()[kZoom]} * Settings()[kResolution];
  const std::uint32_t limit = quirk_ == 3 ? 160000 : 80000;
  if (product > limit) return MaximumWidth(Low16((product + 50) / 100));
  return (SelectedArea().width * product / resolutions_.back() + 50) / 100;
}

StandardSet::Placement StandardSet::PlaceLine(std::uint32_t limit) {
  const bool mirrors = Settings()[kMirrorImage] != 0;
  if (mirrors && level_ >= 3) return PlaceFromRight(limit);
  Placement placement{left_, Up8(width_)};
  pad_ = 0;
  if (left_ + placement.width > limit) {
    placement.width = Down8(limit - left_);
    pad_ = static_cast<std::int16_t>(width_ - placement.width);
  } else if (mirrors && Settings()[kParamG] != 1) {
    pad_ = static_cast<std::int16_t>(placement.width - width_);
  }
  return placement;
}

StandardSet::Placement StandardSet::PlaceFromRight(std::uint32_t limit) {
  std::uint32_t right = left_ + width_;
  std::uint32_t width = width_;
  if (right > limit) {
    width = limit - left_;
    right = limit;
  }
  pad_ = 0;
  if (static_cast<std::int32_t>(right - Up8(width)) < 0) {
    width = Down8(width);
    pad_ = static_cast<std::int16_t>(right - width - left_);
  } else {
    width = Up8(width);
  }
  return {right - width, width};
}

// The highest level has limits that refuse an area, the others such that clip it.
bool StandardSet::RefusesArea(const Placement& placement) {
  if (level_ >= 8) {
    if (placement.left > 65535 || top_ > 65535) {
      error_ = 34;
      return true;
    }
    if (placement.width > 32752 || height_ > 65535) {
      error_ = 35;
      return true;
    }
  }
  if (placement.width == 0) {
    error_ = 1;  // free choice: there is nothing to scan
    return true;
  }
  return false;
}

void StandardSet::ClipLine(Placement& placement) const {
  const auto clip = [&](std::uint32_t most) {
    if (placement.width <= most) return;
    placement.width = most;
    placement.clipped = true;
  };
  if (level_ < 8) {
    clip(16128);
    if (Down8(bits_ * placement.width) > 256000) placement.clipped = true;
  }
  if (level_ == 1) clip(4096);
}

// The whole height of the selected area, at the lowest resolution.
bool StandardSet::IsWholePage() const {
  const Record& settings = Settings();
  const bool flatbed = settings[kScanSource] == 0;
  const std::uint32_t hundredths = settings[flatbed ? kBedHeight : kOptionHeight];
  const auto lines = static_cast<std::int32_t>(hundredths * settings[kResolution]) / 100;
  return settings[kDocFeedOption] == 0 && resolutions_[0] == settings[kResolution] &&
         height_ == static_cast<std::uint32_t>(lines);
}

void StandardSet::UploadArea() {
  Placement placement = PlaceLine(WidestLine());
  if (RefusesArea(placement)) return;
  ClipLine(placement);
  sentWidth_ = placement.width;
  if (IsWholePage()) placement.left = (width_ - placement.width) / 2;
  SendParameters('A', Words({placement.left, top_, placement.width, height_}));
  if (placement.clipped) error_ = 16;
}

std::uint8_t StandardSet::Focus(bool automatic, std::uint8_t position) {
  if (!automatic) {
    SendParameters('p', {position});
    return position;
  }
  if (resolutions_.empty()) return 0xFF;  // free choice: not identified, there is no area
  TakeArea();
  TakePixelType();
  UploadSettings();
  SendParameters('p', {0xFF});
  return AskFocusPosition();
}

}  // namespace pmddb832::models
