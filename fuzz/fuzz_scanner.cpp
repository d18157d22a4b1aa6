#include "fuzz/fuzz_scanner.h"

#include <algorithm>
#include <cstdlib>

#include "wire/commands.h"
#include "wire/parameter_block.h"
#include "wire/parameter_fields.h"
#include "wire/protocol_bytes.h"
#include "wire/reply_shapes.h"

namespace pmddb832::fuzz {
namespace {

// A call asks for 65535 lines at most, each at most a block of its own: header, data, answer and
// its acknowledge. The set-up in front of them is small.
constexpr std::size_t kMostTransfers = 4 * 65535 + 1000;

constexpr std::uint8_t kUsedUp = kMoments;  // in place of a fault's moment

template <std::size_t size>
std::array<std::uint8_t, size> Copied(std::span<const std::uint8_t> bytes) {
  std::array<std::uint8_t, size> block{};
  std::copy_n(bytes.begin(), std::min(size, bytes.size()), block.begin());
  return block;
}

FaultKind KindOf(const Fault& fault) {
  return static_cast<FaultKind>(Get(fault, fault::kKind) % kFaultKinds);
}

// Every byte that is sent must be one that was set.
bool SumsUp(std::span<const std::uint8_t> bytes) {
  std::uint32_t sum = 0;
  for (const std::uint8_t byte : bytes) sum += byte;
  return sum != UINT32_MAX;
}

}  // namespace

FuzzScanner::FuzzScanner(const Conversation& conversation, Family family, void (*callWithin)())
    : conversation_(conversation),
      family_(family),
      callWithin_(callWithin),
      faults_(conversation.faults) {
  for (Fault& fault : faults_.All()) {
    const std::size_t moment = Get(fault, fault::kMoment) % kMoments;
    Put(fault, fault::kMoment, static_cast<std::uint8_t>(moment));
  }
}

std::int32_t FuzzScanner::RawReadData(void* buffer, std::uint32_t* byteCount, void* /*unused*/) {
  if (!BeginTransfer(Moment::kRead)) return -1;
  if (readsToFailure_ > 0 && --readsToFailure_ == 0) return -1;
  const std::span bytes{static_cast<std::uint8_t*>(buffer), *byteCount};
  if (replyRead_ < reply_.size || !sends_) {
    ReadReply(bytes);
  } else {
    ReadBlock(bytes);
  }
  return 0;
}

std::int32_t FuzzScanner::RawWriteData(void* buffer, std::uint32_t byteCount, void* /*unused*/) {
  const std::span bytes{static_cast<const std::uint8_t*>(buffer), byteCount};
  const bool answersBlock = sends_ && letter_ == 0 && bytes.size() == 1;
  if (!BeginTransfer(answersBlock ? Moment::kBlockAnswer : Moment::kWrite)) return -1;
  if (!SumsUp(bytes)) return -1;
  TakeWritten(bytes);
  MeetInReply();
  return 0;
}

const Fault* FuzzScanner::Meet(Moment moment) {
  for (Fault& fault : faults_.All()) {
    if (Get(fault, fault::kMoment) != static_cast<std::uint8_t>(moment)) continue;
    const std::uint8_t skipped = Get(fault, fault::kSkipped);
    if (skipped > 0) {
      Put(fault, fault::kSkipped, static_cast<std::uint8_t>(skipped - 1));
      continue;
    }
    Put(fault, fault::kMoment, kUsedUp);
    return &fault;
  }
  return nullptr;
}

// Whether the transfer succeeds.
bool FuzzScanner::BeginTransfer(Moment moment) {
  if (++transfers_ > kMostTransfers) std::abort();
  if (gone_) return false;
  const Fault* const fault = Meet(moment);
  if (fault == nullptr) return true;
  if (KindOf(*fault) == FaultKind::kGone) gone_ = true;
  if (KindOf(*fault) != FaultKind::kCallWithin) return false;
  callWithin_();
  return true;
}

// A reply that was just made.
void FuzzScanner::MeetInReply() {
  if (replyRead_ != 0 || reply_.size == 0) return;
  const Fault* const fault = Meet(reply_.moment);
  if (fault == nullptr) return;
  const std::size_t place = Get(*fault, fault::kPlace);
  switch (KindOf(*fault)) {
    case FaultKind::kFailure:
      readsToFailure_ = 1 + place % 4;
      return;
    case FaultKind::kCallWithin:
      return callWithin_();
    case FaultKind::kGone:
      gone_ = true;
      return;
    default:
      Damage(*fault, {reply_.bytes.data(), reply_.size}, place);
      HeedCount();
  }
}

// A reply that declares more data than it should have has as many.
void FuzzScanner::HeedCount() {
  const ReplyKind kind = command_ == nullptr ? ReplyKind::kAcknowledge : command_->reply;
  const std::size_t declared = sizeof(ReplyHeader) + DeclaredDataBytes(kind, reply_.All());
  reply_.size = std::max(reply_.size, std::min(declared, reply_.bytes.size()));
}

void FuzzScanner::Damage(const Fault& fault, std::span<std::uint8_t> bytes, std::size_t place) {
  const auto rest = bytes.subspan(std::min(place, bytes.size()));
  const std::uint16_t value = Get(fault, fault::kValue);
  if (KindOf(fault) == FaultKind::kGarbage) {
    const auto image = conversation_.image.All();
    std::copy_n(image.begin(), std::min(image.size(), rest.size()), rest.begin());
    return;
  }
  if (!rest.empty()) rest[0] = static_cast<std::uint8_t>(value);
  if (KindOf(fault) == FaultKind::kWord && rest.size() > 1) {
    rest[1] = static_cast<std::uint8_t>(value >> 8);
  }
}

void FuzzScanner::TakeWritten(std::span<const std::uint8_t> bytes) {
  const bool isZoom = bytes.size() == 2 && bytes[0] == bytes[1];
  if (bytes.size() == 2 && (bytes[0] == kEsc || bytes[0] == kFs) && !isZoom) {
    command_ = FindCommand(bytes);
    if (command_ == nullptr) std::abort();
    TakeCommand(bytes[0], bytes[1]);
  } else if (letter_ == 0 && bytes.size() == 1) {
    TakeControl(bytes[0]);
  } else {
    TakeParameters(bytes);
  }
}

void FuzzScanner::TakeCommand(std::uint8_t prefix, std::uint8_t letter) {
  replyRead_ = 0;
  sends_ = letter == esc::kStart;
  letter_ = 0;
  if (sends_ && prefix == kEsc) {
    linesLeft_ = request_.height;
    return AnswerStart(conversation_.scanner, request_, reply_);
  }
  const ScannerBlock& scanner = conversation_.scanner;
  if (prefix == kEsc) {
    AnswerStandard(scanner, family_, letter, reply_);
  } else {
    AnswerExtended(scanner, request_, letter, reply_);
  }
  if (reply_.moment == Moment::kAcknowledge && letter != esc::kReset) letter_ = letter;
}

void FuzzScanner::TakeParameters(std::span<const std::uint8_t> bytes) {
  if (bytes.size() == sizeof(ParameterBlock)) {
    TakeExtendedParameters(bytes);
  } else {
    TakeStandardParameters(bytes);
  }
  letter_ = 0;
  replyRead_ = 0;
  AnswerAcknowledge(reply_);
}

void FuzzScanner::TakeExtendedParameters(std::span<const std::uint8_t> bytes) {
  const auto block = Copied<sizeof(ParameterBlock)>(bytes);
  request_.width = Get(block, parameter::kAreaWidth);
  request_.height = Get(block, parameter::kAreaHeight);
  request_.linesPerBlock = Get(block, parameter::kLinesPerBlock);
  request_.colorMode = Get(block, parameter::kColorMode);
  request_.bitsPerSample = Get(block, parameter::kBitsPerSample);
}

void FuzzScanner::TakeStandardParameters(std::span<const std::uint8_t> bytes) {
  const auto block = Copied<8>(bytes);
  const std::uint8_t value = block[0];
  switch (letter_) {
    case esc::kArea:
      request_.width = Get(block, standard_parameter::kThirdWord);
      request_.height = Get(block, standard_parameter::kFourthWord);
      return;
    case esc::kLinesPerBlock:
      request_.linesPerBlock = value;
      return;
    case esc::kColorMode:
      request_.colorMode = value;
      return;
    case esc::kBitsPerSample:
      request_.bitsPerSample = value;
      return;
    default:
      return;
  }
}

// Whatever else comes as a single byte, a cancel or a page's way, is acknowledged.
void FuzzScanner::TakeControl(std::uint8_t code) {
  if (code == kAck && sends_) {
    if (family_ == Family::kStandard) SendBlockHeader();
    return;
  }
  if (code == kCan) sends_ = false;
  replyRead_ = 0;
  AnswerAcknowledge(reply_);
}

void FuzzScanner::SendBlockHeader() {
  linesLeft_ -= std::min(linesLeft_, LinesOfBlock(conversation_.scanner, request_));
  replyRead_ = 0;
  AnswerBlockHeader(conversation_.scanner, request_, linesLeft_, reply_);
}

void FuzzScanner::ReadReply(std::span<std::uint8_t> buffer) {
  const auto rest = reply_.All().subspan(replyRead_);
  const std::size_t count = std::min(rest.size(), buffer.size());
  std::copy_n(rest.begin(), count, buffer.begin());
  replyRead_ += count;
}

// In the extended set a status byte ends the block.
void FuzzScanner::ReadBlock(std::span<std::uint8_t> buffer) {
  const auto image = conversation_.image.All();
  std::copy_n(image.begin(), std::min(image.size(), buffer.size()), buffer.begin());
  if (buffer.empty()) return;
  if (family_ == Family::kExtended) buffer.back() = 0;
  const Fault* const fault = Meet(Moment::kBlock);
  if (fault == nullptr) return;
  if (KindOf(*fault) == FaultKind::kCallWithin) return callWithin_();
  const std::size_t place = Get(*fault, fault::kPlace) % buffer.size();
  Damage(*fault, buffer, buffer.size() - 1 - place);
}

}  // namespace pmddb832::fuzz
