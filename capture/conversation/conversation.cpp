#include "capture/conversation/conversation.h"

#include <utility>

#include "wire/reply_shapes.h"

namespace capture {
namespace {

using pmddb832::FindCommand;
using pmddb832::ReplyKind;

bool IsControl(std::span<const std::uint8_t> bytes) {
  return bytes.size() == 1 && (bytes[0] == pmddb832::kEm || bytes[0] == pmddb832::kFf);
}

bool IsPrefixed(std::span<const std::uint8_t> bytes) {
  return bytes.size() == 2 && (bytes[0] == pmddb832::kEsc || bytes[0] == pmddb832::kFs);
}

}  // namespace

Part Conversation::Write(Bytes bytes) {
  if (AreParameters(bytes)) {
    TakeParameters(bytes);
    return Part::kParameters;
  }
  if (const pmddb832::CommandShape* const command = FindCommand(bytes); command != nullptr) {
    Begin(*command);
    return Part::kCommand;
  }
  if (bytes.size() == 1 && TakeBlockAnswer(bytes[0])) return Part::kBlockAnswer;
  const bool isControl = IsControl(bytes);
  expected_ = isControl ? Expected::kAcknowledge : Expected::kNothing;
  if (isControl) return Part::kControl;
  return IsPrefixed(bytes) ? Part::kUnknown : Part::kStray;
}

void Conversation::Begin(const pmddb832::CommandShape& command) {
  command_ = &command;
  message_.clear();
  picture_.reset();
  if (command.reply != ReplyKind::kAcknowledge) {
    expected_ = Expected::kReply;
  } else if (command.parameterBytes != 0) {
    expected_ = Expected::kLetterAcknowledge;
  } else {
    expected_ = Expected::kAcknowledge;
    scan_ = {};
  }
  const bool isRepeatedStart = command.reply == ReplyKind::kBlockHeader && scan_.startIsRepeated;
  if (!isRepeatedStart || scan_.linesAtOnce) return;
  picture_ = PictureBlocks::Standard(scan_, {});
  expected_ = Expected::kNothing;
}

// Parameters may come in pieces; a command in their place is one when it does not complete them.
bool Conversation::AreParameters(Bytes bytes) const {
  if (expected_ != Expected::kParameters) return false;
  const std::size_t left = NextParameterBytes();
  if (bytes.size() == left) return true;
  return bytes.size() < left && FindCommand(bytes) == nullptr && !IsControl(bytes);
}

void Conversation::TakeParameters(Bytes bytes) {
  message_.insert(message_.end(), bytes.begin(), bytes.end());
  isWhole_ = message_.size() == command_->parameterBytes;
  if (!isWhole_) return;
  scan_.Note(*command_, message_);
  expected_ = Expected::kAcknowledge;
}

bool Conversation::TakeBlockAnswer(std::uint8_t byte) {
  const bool awaitsAnswer =
      picture_.has_value() && picture_->Next() == PictureBlocks::Step::kAnswer;
  if (!awaitsAnswer || (byte != pmddb832::kAck && byte != pmddb832::kCan)) return false;
  if (byte == pmddb832::kAck) {
    picture_->TakeAnswer();
  } else {
    picture_->End();
    expected_ = Expected::kAcknowledge;
  }
  return true;
}

bool Conversation::AwaitsPicture() const {
  if (!picture_.has_value() || expected_ != Expected::kNothing) return false;
  const PictureBlocks::Step next = picture_->Next();
  return next == PictureBlocks::Step::kHeader || next == PictureBlocks::Step::kBlock;
}

std::uint64_t Conversation::NextReadBytes() const {
  if (AwaitsPicture()) return picture_->NextBytes();
  switch (expected_) {
    case Expected::kLetterAcknowledge:
    case Expected::kAcknowledge:
      return 1;
    case Expected::kReply:
      return pmddb832::ReplyShapeOf(command_->reply).firstRead;
    case Expected::kReplyData:
      return pmddb832::DeclaredDataBytes(command_->reply, message_);
    default:
      return 0;
  }
}

std::size_t Conversation::NextParameterBytes() const {
  if (expected_ != Expected::kParameters) return 0;
  return command_->parameterBytes - message_.size();
}

Part Conversation::Read(Bytes bytes, bool hasFailed) {
  const std::uint8_t lastByte = bytes.empty() ? std::uint8_t{0} : bytes.back();
  return Read({bytes, bytes.size(), lastByte, hasFailed});
}

Part Conversation::Read(const Delivery& delivery) {
  if (AwaitsPicture()) return TakePicture(delivery);
  if (expected_ == Expected::kNothing || expected_ == Expected::kParameters) return Part::kStray;
  const bool isReply = expected_ == Expected::kReply || expected_ == Expected::kReplyData;
  if (delivery.hasFailed || delivery.bytes.empty()) {
    expected_ = Expected::kNothing;
  } else if (isReply) {
    TakeReply(delivery.bytes);
  } else {
    TakeAcknowledge(delivery.bytes[0]);
  }
  return isReply ? Part::kReply : Part::kAcknowledge;
}

Part Conversation::TakePicture(const Delivery& delivery) {
  const bool isHeader = picture_->Next() == PictureBlocks::Step::kHeader;
  if (delivery.hasFailed || delivery.count == 0) {
    picture_->End();
  } else if (isHeader) {
    picture_->TakeHeader(delivery.bytes);
  } else {
    picture_->TakeBlock(delivery.count, delivery.lastByte);
  }
  return isHeader ? Part::kBlockHeader : Part::kBlock;
}

void Conversation::TakeAcknowledge(std::uint8_t byte) {
  const bool wasLetter =
      std::exchange(expected_, Expected::kNothing) == Expected::kLetterAcknowledge;
  if (wasLetter && byte == pmddb832::kAck) expected_ = Expected::kParameters;
}

void Conversation::TakeReply(Bytes bytes) {
  message_.insert(message_.end(), bytes.begin(), bytes.end());
  isWhole_ = expected_ == Expected::kReplyData ||
             pmddb832::DeclaredDataBytes(command_->reply, message_) == 0;
  expected_ = isWhole_ ? Expected::kNothing : Expected::kReplyData;
  if (isWhole_) BeginPicture();
}

void Conversation::BeginPicture() {
  if (command_->reply == ReplyKind::kTransferHeader) {
    picture_ = PictureBlocks::Extended(scan_, message_);
  } else if (command_->reply == ReplyKind::kBlockHeader) {
    picture_ = PictureBlocks::Standard(scan_, message_);
    scan_.startIsRepeated = picture_->Next() == PictureBlocks::Step::kNone;
  }
}

}  // namespace capture
