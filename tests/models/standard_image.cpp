#include <algorithm>

#include "tests/models/pixels.h"
#include "tests/models/standard_set.h"

// The set-up and the image of a standard scan: blocks with a header in front of each.

namespace pmddb832::models {

void StandardSet::TakeArea() {
  width_ = sentWidth_ = Settings()[kAreaWidthPx];
  height_ = Settings()[kAreaHeightPx];
  left_ = Settings()[kAreaLeftPx];
  top_ = Settings()[kAreaTopPx];
}

void StandardSet::TakePixelType() {
  struct Row {
    std::uint8_t bits, colorMode;
    std::uint32_t pixelsPerUnit, bytesPerUnit;
  };
  constexpr Row kRows[] = {{1, 0, 8, 1},    {4, 0, 2, 1},     {8, 0, 1, 1},
                           {1, 2, 2, 1},    {3, 2, 1, 1},     {8, 0x13, 1, 3},
                           {4, 0x13, 1, 2}, {16, 0x13, 1, 6}, {16, 0, 1, 2}};
  const std::uint32_t type = Settings()[kPixelType];
  if (type > 8) return;
  pixelType_ = type;
  bits_ = kRows[type].bits;
  colorMode_ = kRows[type].colorMode;
  pixelsPerUnit_ = kRows[type].pixelsPerUnit;
  bytesPerUnit_ = kRows[type].bytesPerUnit;
  if (bits_ == 16 && Settings()[kPreviewMode] != 0) {
    bits_ = 8;
    bytesPerUnit_ /= 2;
  }
}

void StandardSet::InitAcquire(std::uint32_t format, bool tellsProgress, SetupRecord& setup) {
  error_ = 0;
  TakeArea();
  format_ = format;
  TakePixelType();
  lineBytes_ = (width_ + pixelsPerUnit_ - 1) / pixelsPerUnit_ * bytesPerUnit_;
  if (format != 1 || pixelsPerUnit_ != 2) lineBytes_ = (lineBytes_ + 3) & ~3u;
  if (lineBytes_ == 0) {
    error_ = 1;
    setUp_ = false;
    return;
  }
  setUp_ = true;
  linesDone_ = 0;
  lines_ = height_;
  tellsProgress_ = tellsProgress;
  fillsWhite_ = false;
  armed_ = true;
  const std::uint32_t overhead = colorMode_ != 0 ? 60 : 30;
  const bool fits =
      pixelType_ == 6 ? lineBytes_ <= 32768 : std::uint64_t{lineBytes_} + overhead <= 64270;
  if (!fits) error_ = 16;
  setup[kSetupStatus] = fits ? kGoOn : kFailed;
  setup[kSetupLineBytes] = lineBytes_;
  setup[kSetupWidth] = width_;
  setup[kSetupHeight] = height_;
}

// Lines are counted with room for groups of 8 units.
std::uint32_t StandardSet::RoomOfLine() const {
  const std::uint32_t units = (width_ + pixelsPerUnit_ - 1) / pixelsPerUnit_;
  return (units + 7) / 8 * bytesPerUnit_ * 8;
}

void StandardSet::PrepareReceiving(std::uint32_t bufferBytes, bool fresh) {
  if (fresh) {
    receiveSize_ = 65280;
  } else if (bufferBytes < 65280) {
    receiveSize_ = std::max(bufferBytes, RoomOfLine()) + 10;
  } else {
    receiveSize_ = std::max<std::uint32_t>(receiveSize_, 65280);
  }
  // Free choice: twice the room for the palette and for previews of the deep types, whose raw lines
  // are longer than the host's.
  const bool preview = pixelType_ >= 7 && bits_ == 8;
  data_.assign(receiveSize_ * (preview || pixelType_ == 4 ? 2 : 1), 0);
  received_ = 0;
}

bool StandardSet::InitiateScan() {
  scanActive_ = ackPending_ = true;
  aborting_ = false;
  UploadSettings();
  if (error_ != 0) return false;
  return CheckOption() && ChooseBlocks() && StartTransfer();
}

bool StandardSet::CheckOption() {
  if (optionKind_ == 2 || Settings()[kScanSource] == 0) return true;
  if (!ReadStatus()) {
    error_ = 7;
  } else if (optionKind_ == 1) {
    if ((reply_[10] & 0x02) != 0) error_ = 15;
  } else if ((reply_[5] & 0x08) == 0) {
    if ((reply_[5] & 0x04) != 0) {
      error_ = 14;
    } else if ((reply_[5] & 0x02) != 0) {
      error_ = 15;
    }
  }
  return error_ == 0;
}

bool StandardSet::ChooseBlocks() {
  blockMode_ = Settings()[kLevelDigit] >= '4';
  if (!blockMode_) return true;
  const std::uint32_t room = RoomOfLine();
  const std::uint32_t lines = room == 0 ? 0 : (receiveSize_ - 10) / room;
  if (lines == 0) {
    error_ = 16;
    return false;
  }
  SendParameters('d', {Low8(std::min<std::uint32_t>(lines, 255))});
  return true;
}

// ESC "G" may be refused once; the header of the second try belongs to the first block.
bool StandardSet::StartTransfer() {
  headerPending_ = false;
  startHeader_ = {};
  if (!CheckWarmup()) return false;
  Repaint();
  if (!SendEsc('G') || !OnWire().Read(startHeader_)) {
    error_ = 9;
    return false;
  }
  if ((startHeader_[1] & 0x80) != 0) {
    if (!CheckWarmup()) return false;
    Repaint();
    if (!SendEsc('G')) {
      error_ = 9;
      return false;
    }
  } else {
    headerPending_ = true;
  }
  blockLines_ = blockLine_ = 0;
  return true;
}

bool StandardSet::ReceiveHeader(std::array<std::uint8_t, 6>& header) {
  if (blockMode_ && headerPending_) {
    headerPending_ = false;
    header = startHeader_;
    return true;
  }
  const std::size_t bytes = blockMode_ ? 6 : 4;
  return OnWire().Read(std::span(header).first(bytes)) && header[0] == 0x02;
}

// Only a block that is not the last one is answered: the last one ends the scan by itself.
bool StandardSet::Acknowledge(std::uint8_t status) {
  if ((status & 0x20) != 0) {
    scanActive_ = false;
    return true;
  }
  if ((status & 0x40) != 0) armed_ = false;
  ackPending_ = !aborting_;
  if (!aborting_) return OnWire().Write({0x06});
  if (!Cancel()) return false;
  if (Settings()[kScanSource] != 0 && optionKind_ == 0) EjectPage();
  scanActive_ = false;
  return true;
}

// Free choice: a block counts when it was received and answered; behind one that failed the next
// line needs a new block.
bool StandardSet::ReceiveBlock() {
  if (data_.empty()) {
    error_ = 9;  // free choice: a close took the place for it
    return false;
  }
  std::array<std::uint8_t, 6> header{};
  if (!ReceiveHeader(header)) return false;
  const std::uint32_t lineBytes = U16(header, 2);
  const std::uint16_t lines = blockMode_ ? U16(header, 4) : std::uint16_t{1};
  if (lines == 0) {
    ReadStatus();
    return false;
  }
  blockLines_ = blockLine_ = 0;
  received_ = 0;
  const std::uint64_t bytes = std::uint64_t{lineBytes} * lines;
  if (bytes > data_.size()) {
    error_ = 9;  // free choice: what does not fit is not read
    return false;
  }
  if (!OnWire().Read(std::span(data_).first(static_cast<std::size_t>(bytes)))) return false;
  received_ = static_cast<std::size_t>(bytes);
  if (!Acknowledge(header[1])) return false;
  blockLines_ = lines;
  lineLength_ = lineBytes;
  return true;
}

bool StandardSet::NextLine() {
  if (aborting_ && ackPending_) blockLines_ = blockLine_ = 0;
  if (blockLine_ == blockLines_ && scanActive_ && !ReceiveBlock()) return false;
  if (!scanActive_ && aborting_) blockLine_ = 0;
  line_ = blockMode_ ? std::size_t{blockLine_} * lineLength_ : 0;
  blockLine_ = blockMode_ ? Low16(blockLine_ + 1u) : std::uint16_t{1};
  return true;
}

// The bytes of a line of line art, as many as the host's line has at most; else pixels.
std::uint32_t StandardSet::CountedPixels() const {
  return pixelType_ == 0 ? std::min(lineLength_, lineBytes_) : width_;
}

bool StandardSet::DeliverLine(std::span<std::uint8_t> row) {
  if (fillsWhite_) aborting_ = true;
  if (!NextLine()) return false;
  std::size_t end = received_;
  if (fillsWhite_) {
    const std::size_t start = std::min(line_, data_.size());
    const std::size_t white = std::min<std::size_t>(lineBytes_, data_.size() - start);
    std::fill_n(data_.begin() + static_cast<std::ptrdiff_t>(start), white, 0xFF);
    end = std::max(end, start + white);
  }
  const auto line = std::span(data_).first(end).subspan(std::min(line_, end));
  // Free choice: each plane of the palette has half the line that was asked for.
  MakeHostLine(pixelType_, {line, CountedPixels(), pad_, (sentWidth_ + 1) / 2, format_ != 1},
               Settings(), row);
  return true;
}

bool StandardSet::DeliverLines(std::span<std::uint8_t> buffer, std::uint32_t lines) {
  for (std::uint32_t i = 0; i < lines; ++i) {
    if (tellsProgress_ && i % 10 == 0) OnWire().Progress((linesDone_ + i) * 100 / lines_);
    const std::size_t row = IsTopDown(format_) ? i : lines - 1 - i;
    if (!DeliverLine(buffer.subspan(row * lineBytes_, lineBytes_))) return false;
  }
  return true;
}

void StandardSet::AcquireImage(std::span<std::uint8_t> buffer, BandRecord& band) {
  const bool fresh = band[kBandStatus] == kFreshBuffer;
  band[kBandStatus] = kFailed;
  error_ = 0;
  if (!opened_ || !setUp_) {
    error_ = 9;  // free choice: there is nothing to transfer
    return;
  }
  if (linesDone_ == 0 && armed_) {
    PrepareReceiving(static_cast<std::uint32_t>(buffer.size()), fresh);
    if (!InitiateScan()) return;
  }
  // A smaller buffer holds no line, whatever room for a line was received into.
  const std::uint16_t fitting = Low16(buffer.size() / lineBytes_);
  if (fitting == 0) {
    aborting_ = true;
    NextLine();
    return;
  }
  const std::uint32_t lines = std::min<std::uint32_t>(fitting, lines_ - linesDone_);
  band[kBandLines] = lines;
  if (!DeliverLines(buffer, lines)) return;
  linesDone_ += lines;
  band[kBandDone] = linesDone_ >= lines_ ? 1 : 0;
  band[kBandBytes] = bytesPerUnit_ * CountedPixels() * lines;
  if (linesDone_ < lines_ || FinishPage()) band[kBandStatus] = kGoOn;
}

bool StandardSet::FinishPage() {
  if (tellsProgress_) OnWire().Progress(100);
  const bool fromFeeder = Settings()[kScanSource] != 0 && optionKind_ == 0;
  if ((!fromFeeder && level_ != 4) || aborting_) return true;
  if (Settings()[kMainStatusBit5] != 0 && Settings()[kKeepPaper] != 0) return true;
  return EjectPage();
}

void StandardSet::AbortScan() {
  fillsWhite_ = aborting_ = true;
  if (scanActive_) NextLine();
}

}  // namespace pmddb832::models
