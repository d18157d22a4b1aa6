#include "simulator/device/scanner.h"

#include <algorithm>

#include "simulator/catalog/hex.h"
#include "simulator/device/protocol_bytes.h"

namespace simulator {

std::string Scanner::Command::Name() const {
  const bool printable = letter > ' ' && letter < 0x7F;
  return (prefix == kEscape ? "ESC " : "FS ") +
         (printable ? std::string(1, static_cast<char>(letter)) : Hex(std::span(&letter, 1)));
}

void Scanner::AnswerInformation(std::uint8_t status, Bytes data, bool withoutStx) {
  const auto count = static_cast<std::uint16_t>(data.size());
  Answer(withoutStx ? kNak : kStx);
  Answer(status);
  Answer(static_cast<std::uint8_t>(count));
  Answer(static_cast<std::uint8_t>(count >> 8));
  if (withoutStx) {
    ExcuseReading();
  } else {
    Answer(data);
  }
}

void Scanner::Refuse(const std::string& reason) {
  NoteRefusal(reason);
  Answer(kNak);
}

void Scanner::Violate(const std::string& sentence) {
  if (!outOfStep_) violations_.push_back(sentence);
}

void Scanner::ClearReplies() {
  replies.Clear();
  outOfStep_ = false;
}

void Scanner::DropAnswer() {
  while (SendBlockPiece()) {
  }
  replies.Clear();
  blockInQueue_ = false;
}

// A command breaks a block off that is under way. Other unread bytes stay: the driver will take
// them for the answer to what it sends now, as with a real scanner.
void Scanner::JudgeUnread(Bytes written) {
  readingExcused_ = false;
  SendBlockPiece();
  if (replies.Size() == 0) {
    blockInQueue_ = false;
    return;
  }
  Violate("sent " + Hex(written) + " before reading the scanner's " + Hex(replies.Unread()));
  if (blockInQueue_ && (written[0] == kEscape || written[0] == kFileSeparator)) {
    EndTransfer();
    replies.Clear();
    blockInQueue_ = false;
  }
  while (SendBlockPiece()) {
  }
}

bool Scanner::SendBlockPiece() {
  const bool sent = SendMore();
  blockInQueue_ = blockInQueue_ || sent;
  return sent;
}

void Scanner::JudgeReading(std::uint32_t wanted, std::uint32_t delivered) {
  if (readingExcused_) return;
  Violate("read " + std::to_string(wanted) + " bytes where the scanner has " +
          std::to_string(delivered) + " to say");
}

std::size_t Scanner::Consume(Bytes bytes) {
  if (parametersMissing_ > 0) return ConsumeParameters(bytes);
  if (prefixAlone_) return ConsumeLetter(bytes);
  if (BlockAwaitingAnswer()) return ConsumeBlockAnswer(bytes);
  return ConsumeFirst(bytes);
}

std::size_t Scanner::ConsumeParameters(Bytes bytes) {
  const Bytes portion = bytes.first(std::min(parametersMissing_, bytes.size()));
  collected_.insert(collected_.end(), portion.begin(), portion.end());
  parametersMissing_ -= portion.size();
  if (parametersMissing_ == 0) ExecuteWithParameters();
  return portion.size();
}

void Scanner::ExecuteWithParameters() {
  if (defects.nakParameters == command_.letter) {
    Refuse("defect: NAK to the parameters of " + command_.Name());
    return;
  }
  Execute(command_.prefix, command_.letter, collected_);
  if (defects.lateNak != command_.letter) return;
  Answer(kNak);
  ExcuseOutOfStep();
}

std::size_t Scanner::ConsumeLetter(Bytes bytes) {
  command_ = {*prefixAlone_, bytes[0]};
  prefixAlone_.reset();
  Begin(ParameterBytes(command_.prefix, command_.letter));
  return 1;
}

void Scanner::Begin(const std::optional<std::uint32_t>& parameterBytes) {
  if (!parameterBytes) {
    if (defects.SpoilProbe()) ExcuseOutOfStep();
    Violate("expected a command that the scanner knows, got " + command_.Name());
    Refuse("unknown command " + command_.Name());
  } else if (defects.nakCommand == command_.letter) {
    Refuse("defect: NAK to " + command_.Name());
    ExcuseReading();
  } else if (*parameterBytes == 0) {
    Execute(command_.prefix, command_.letter, {});
  } else {
    parametersMissing_ = *parameterBytes;
    collected_.clear();
    Answer(kAck);
  }
}

std::size_t Scanner::ConsumeBlockAnswer(Bytes bytes) {
  if (bytes[0] == kAck) {
    ContinueTransfer();
    return 1;
  }
  const std::string block = std::to_string(*BlockAwaitingAnswer());
  EndTransfer();
  if (bytes[0] == kCancel) {
    Answer(kAck);
    return 1;
  }
  Violate("expected ACK or CAN after block " + block + ", got " + Hex(bytes));
  return ConsumeFirst(bytes);
}

std::size_t Scanner::ConsumeFirst(Bytes bytes) {
  switch (bytes[0]) {
    case kEscape:
    case kFileSeparator:
      prefixAlone_ = bytes[0];
      return 1;
    case kEndOfMedium:
      FeedPage();
      return 1;
    case kFormFeed:
      EjectPage();
      return 1;
    default:
      Violate("expected a command, got " + Hex(bytes));
      return bytes.size();
  }
}

}  // namespace simulator
