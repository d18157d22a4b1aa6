#include <algorithm>

#include "tests/models/extended_set.h"
#include "tests/models/pixels.h"

// The image of an extended scan: blocks of lines, each with a status byte behind it.

namespace pmddb832::models {

// FS "G" may be refused once, as by a scanner that is still busy.
bool ExtendedSet::StartOnce(bool& refused) {
  if (!CheckWarmup()) return false;
  Repaint();
  if (!SendFs('G') || !OnWire().Read(header_) || header_[0] != 0x02) return false;
  refused = (header_[1] & 0x80) != 0;
  return true;
}

bool ExtendedSet::Start() {
  bool refused = false;
  if (!StartOnce(refused)) return false;
  if (!refused) return true;
  return StartOnce(refused) && !refused;
}

bool ExtendedSet::StartTransfer() {
  if (!SetUpScan()) {
    error_ = 22;
    return false;
  }
  if (!Start()) {
    if (error_ == 43) return false;
    const std::uint32_t condition = GetOptionStatus(Settings()[kDocFeedOption]);
    error_ = condition == 0 ? 22 : condition;
    return false;
  }
  transferActive_ = true;
  return true;
}

// Answers a block that came without an error: cancelled when the host aborts, and nothing is said
// to the last one.
bool ExtendedSet::AnswerBlock(std::uint8_t status, bool isLast) {
  if ((status & 0x80) != 0) {
    const std::uint32_t condition = GetOptionStatus(Settings()[kDocFeedOption]);
    error_ = condition == 22 ? 9 : condition;
    return false;
  }
  const bool cancels = !isLast && abortRequested_;
  const bool answered = isLast || (cancels ? Cancel() : OnWire().Write({0x06}));
  if (!answered) {
    error_ = 9;
    return false;
  }
  if (cancels && Settings()[kScanSource] != 0 && Settings()[kDocFeedOption] == 0) EjectPage();
  endOfData_ = isLast || cancels;
  ++blocksRead_;
  return true;
}

bool ExtendedSet::ReadBlock() {
  const bool isLast = blocksRead_ >= U32(header_, 6);
  const std::uint32_t size = U32(header_, isLast ? 10 : 2);
  const auto room = static_cast<std::uint32_t>(data_.size());
  // Free choice: what does not fit with its status byte is not read.
  if (size >= room || !OnWire().Read(std::span(data_).first(size + 1))) {
    error_ = 9;
    return false;
  }
  received_ = size;
  return AnswerBlock(data_[size], isLast);
}

bool ExtendedSet::AdvanceLine() {
  if (!opened_ || !transferActive_) {
    error_ = 9;  // free choice: there is nothing to transfer
    return false;
  }
  if (line_ % parameters_[28] == 0) {
    cursor_ = 0;
    if (!endOfData_ && !ReadBlock()) return false;
  } else {
    cursor_ += rawLineBytes_;
  }
  return true;
}

bool ExtendedSet::DeliverLine(std::span<std::uint8_t> row) {
  if (!AdvanceLine()) return false;
  std::size_t end = received_;
  // Below the area that is scanned all is white.
  if (line_ >= linesToScan_ && cursor_ + rawLineBytes_ <= data_.size()) {
    end = std::max(end, cursor_ + rawLineBytes_);
    std::fill_n(data_.begin() + static_cast<std::ptrdiff_t>(cursor_), rawLineBytes_, 0xFF);
  }
  const auto line = std::span(data_).first(end).subspan(std::min(cursor_, end));
  const std::uint32_t count = pixelType_ == 0 ? rawLineBytes_ : width_;
  const bool swaps = pixelType_ != 5 && swaps_;  // the scanner swaps type 5 itself
  if (pixelType_ != 4) MakeHostLine(pixelType_, {line, count, pad_, 0, swaps}, Settings(), row);
  ++line_;
  return true;
}

void ExtendedSet::AcquireImage(std::span<std::uint8_t> buffer, BandRecord& band) {
  band[kBandStatus] = kFailed;
  error_ = 0;
  if (!opened_ || hostLineBytes_ == 0) {
    error_ = 9;  // free choice: there is nothing to transfer
    return;
  }
  const std::uint16_t fitting = Low16(buffer.size() / hostLineBytes_);
  if (fitting == 0) return;
  if (!transferActive_ && !StartTransfer()) return;
  const std::uint32_t left = height_ > line_ ? height_ - line_ : 0;
  const std::uint32_t lines = std::min<std::uint32_t>(fitting, left);
  band[kBandLines] = lines;
  for (std::uint32_t i = 0; i < lines; ++i) {
    if (tellsProgress_ && i % 5 == 0) OnWire().Progress(line_ * 100 / height_);
    const std::size_t row = IsTopDown(format_) ? i : lines - 1 - i;
    if (!DeliverLine(buffer.subspan(row * hostLineBytes_, hostLineBytes_))) return;
  }
  band[kBandDone] = line_ >= height_ ? 1 : 0;
  band[kBandBytes] = lines * hostLineBytes_;
  if (line_ < height_ || FinishPage()) band[kBandStatus] = kGoOn;
}

// The page of the feeder is ejected, unless a variant of the feeder is to keep it, or still holds
// paper.
bool ExtendedSet::FinishPage() {
  const Record& settings = Settings();
  if (tellsProgress_) OnWire().Progress(100);
  const bool fromFeeder = settings[kScanSource] != 0 && settings[kDocFeedOption] == 0;
  if (!fromFeeder || abortRequested_) return true;
  if (settings[kMainStatusBit5] != 0) {
    if (settings[kKeepPaper] != 0) return true;
    if (settings[kFeederStatusExtra] != 0 && GetOptionStatus(0) != 13) return true;
  }
  return EjectPage();
}

void ExtendedSet::AbortScan() {
  abortRequested_ = true;
  line_ = 0;
  while (!endOfData_ && AdvanceLine()) {
  }
}

}  // namespace pmddb832::models
