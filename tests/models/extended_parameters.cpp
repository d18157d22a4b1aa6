#include <algorithm>

#include "tests/models/extended_set.h"

// The set-up of an extended scan: lines of the host, and the parameter block of FS "W".

namespace pmddb832::models {
namespace {

constexpr std::uint32_t kWidestLine = 32752;
constexpr std::uint32_t kDataBytes = 65280;

// Lengths are in 1/100 inch; half a pixel rounds up, and what is below zero rounds toward it.
std::uint32_t Pixels(double length, double resolution) {
  const double pixels = (length * resolution + 50.0) / 100.0;
  return static_cast<std::uint32_t>(static_cast<std::int64_t>(pixels));
}

}  // namespace

void ExtendedSet::TakePixelType() {
  const std::uint32_t type = Settings()[kPixelType];
  const bool preview = Settings()[kPreviewMode] != 0;
  const auto take = [&](unsigned bits, unsigned mode, unsigned pixels, unsigned bytes) {
    pixelType_ = type;
    scanBits_ = Low8(bits);
    colorMode_ = Low8(mode);
    pixelsPerUnit_ = pixels;
    bytesPerUnit_ = bytes;
  };
  switch (type) {
    case 0:
      return take(1, 0x00, 8, 1);
    case 2:
      return take(8, 0x00, 1, 1);
    case 5:
      return take(8, swaps_ ? 0x23 : 0x13, 1, 3);
    case 6:
      return take(4, 0x13, 1, 2);
    case 7:
      return take(preview ? 8 : 16, 0x13, 1, preview ? 3 : 6);
    case 8:
      return take(preview ? 8 : 16, 0x00, 1, preview ? 1 : 2);
    default:
      return;  // all stays as it was
  }
}

void ExtendedSet::InitAcquire(std::uint32_t format, bool tellsProgress, SetupRecord& setup) {
  width_ = Settings()[kAreaWidthPx];
  height_ = Settings()[kAreaHeightPx];
  format_ = format;
  swaps_ = format != 1;
  TakePixelType();
  const std::uint32_t units = (width_ + pixelsPerUnit_ - 1) / pixelsPerUnit_;
  hostLineBytes_ = units * bytesPerUnit_;
  const bool packed = format == 4 || (format == 1 && pixelsPerUnit_ == 2);
  if (!packed) hostLineBytes_ = (hostLineBytes_ + 3) & ~3u;
  line_ = blocksRead_ = 0;
  abortRequested_ = endOfData_ = transferActive_ = false;
  tellsProgress_ = tellsProgress;
  setup[kSetupStatus] = kGoOn;
  setup[kSetupLineBytes] = hostLineBytes_;
  setup[kSetupWidth] = width_;
  setup[kSetupHeight] = height_;
  if (width_ > kWidestLine) {
    error_ = 35;
  } else if (hostLineBytes_ == 0) {
    error_ = 1;  // free choice
  } else if (kDataBytes / hostLineBytes_ == 0) {
    error_ = 16;
  } else {
    return;
  }
  setup[kSetupStatus] = kFailed;
}

bool ExtendedSet::SetUpScan() {
  if (U32(identity_, 4) == 0) return false;  // free choice: not identified, there is no area
  FillFormat();
  return SendTables() && FillArea() && FillLinesPerBlock() && SendParameterBlock();
}

void ExtendedSet::FillFormat() {
  const Record& settings = Settings();
  const std::uint32_t source = settings[kDocFeedOption];
  const bool hasOneOption = source == 1 || (source == 0 && settings[kMainStatusBit5] == 0);
  const std::uint8_t area = settings[kScanSource];
  parameters_[26] = hasOneOption && area != 0 ? 1 : area;
  parameters_[37] = area != 0 ? settings[kOptionParam] : 0;
  parameters_[24] = settings[kMonoScan] != 0 ? DropoutCode() : colorMode_;
  parameters_[25] = pixelType_ == 7 || pixelType_ == 8 ? highBitDepth_ : scanBits_;
  const bool optionS = settings[kOptionS] != 0;
  if (settings[kHalftoneOverride] != 0) {
    parameters_[32] = 3;
    parameters_[34] = optionS ? 2 : 0;
  } else {
    parameters_[32] = HalftoneCode();
    parameters_[34] = optionS ? 1 : 0;
  }
  if (settings[kThresholdT] != 0xFFFF) {
    parameters_[33] = Low8(settings[kThresholdT]);
  } else if (settings[kCustomGammaCode] == 4 && optionS) {
    parameters_[33] = 'n';
  }
}

bool ExtendedSet::SendTables() {
  const Record& settings = Settings();
  const bool mono = settings[kMonoScan] != 0;
  if (settings[kCustomGamma] != 0) {
    const bool sent = mono ? SendTable('M', kGammaTableR)
                           : SendTable('R', kGammaTableR) && SendTable('G', kGammaTableG) &&
                                 SendTable('B', kGammaTableB);
    if (!sent) return false;
    parameters_[29] = settings[kCustomGammaCode];
  } else {
    parameters_[29] = GammaCode();
    parameters_[30] = Low8(static_cast<std::uint32_t>(settings[kBrightness] / 333));
  }
  if (!mono) {
    const bool corrects = settings[kColorCorrection] != 0;
    if (corrects && !SendColorMatrix()) return false;
    parameters_[31] = corrects ? 1 : 0;
  }
  parameters_[36] = settings[kMirrorImage] != 0 ? 1 : 0;
  parameters_[35] = Low8(static_cast<std::uint32_t>(settings[kSharpness] / 500));
  parameters_[27] = settings[kParamG];
  return true;
}

bool ExtendedSet::FillArea() {
  Record& settings = Settings();
  const std::uint32_t resolution = Pixels(settings[kResolution], settings[kZoom]);
  settings.Set(kAreaLeftPx, left_ = Pixels(settings[kOriginX], resolution));
  settings.Set(kAreaTopPx, top_ = Pixels(settings[kOriginY], resolution));
  const Size area = settings[kScanSource] == 0 ? flatbed_ : option_;
  const std::uint32_t base = U32(identity_, 4);
  pad_ = 0;
  if (parameters_[25] >= 5 && parameters_[25] <= 12) {
    PlaceBytes(area.width * resolution / base);
  } else {
    PlaceGroups(area.width * resolution / base);
  }
  if (sentWidth_ > kWidestLine) {
    error_ = 35;
    return false;
  }
  linesToScan_ = height_;
  const std::uint32_t limit = area.height * resolution / base;
  if (top_ + height_ > limit) linesToScan_ = limit - top_;
  const std::uint32_t fields[] = {resolution, resolution, left_, top_, sentWidth_, linesToScan_};
  for (std::size_t i = 0; i < 6; ++i) PutU32(parameters_, 4 * i, fields[i]);
  return true;
}

// Samples of whole bytes: the line is cut at the area's edge, or moved left when mirrored.
void ExtendedSet::PlaceBytes(std::uint32_t limit) {
  sentWidth_ = width_;
  if (left_ + width_ <= limit) return;
  if (Settings()[kMirrorImage] != 0) {
    left_ = limit - width_;
  } else {
    sentWidth_ = limit - left_;
    pad_ = static_cast<std::int16_t>(width_ + left_ - limit);
  }
}

// All other samples are sent in groups of 8 pixels; mirrored lines keep their right edge.
void ExtendedSet::PlaceGroups(std::uint32_t limit) {
  if (Settings()[kMirrorImage] == 0) {
    sentWidth_ = Up8(width_);
    if (left_ + sentWidth_ <= limit) return;
    sentWidth_ = Down8(limit - left_);
    pad_ = static_cast<std::int16_t>(width_ - sentWidth_);
    return;
  }
  const std::uint32_t right = std::min(left_ + width_, limit);
  const std::uint32_t width = right - left_;
  if (static_cast<std::int32_t>(right - Up8(width)) < 0) {
    sentWidth_ = Down8(width);
    pad_ = static_cast<std::int16_t>(right - sentWidth_ - left_);
  } else {
    sentWidth_ = Up8(width);
  }
  left_ = right - sentWidth_;
}

bool ExtendedSet::FillLinesPerBlock() {
  rawLineBytes_ = sentWidth_ * bytesPerUnit_ / pixelsPerUnit_;
  const std::uint32_t roomOfLine = Up8(sentWidth_ / pixelsPerUnit_) * bytesPerUnit_;
  // Free choice: a line without pixels does not fit either.
  const std::uint32_t lines = roomOfLine == 0 ? 0 : (kDataBytes - 1) / roomOfLine;
  if (lines < 2) {
    error_ = 16;
    return false;
  }
  parameters_[28] = lines > 254 ? 254 : Low8(lines & ~1u);
  return true;
}

bool ExtendedSet::SendParameterBlock() {
  return SendFs('W') && CheckAck() &&
         OnWire().Write(Bytes(parameters_.begin(), parameters_.end())) && CheckAck();
}

std::uint8_t ExtendedSet::Focus(bool automatic, std::uint8_t position) {
  if (!automatic) return SendParameters('p', {position}) ? position : 0xFF;
  width_ = Settings()[kAreaWidthPx];
  height_ = Settings()[kAreaHeightPx];
  TakePixelType();
  if (!SetUpScan()) {
    error_ = 22;
    return position;
  }
  SendParameters('p', {0xFF});
  return AskFocusPosition();
}

}  // namespace pmddb832::models
