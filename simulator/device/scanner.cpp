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
  if (!outOfStep) violations.push_back(sentence);
}

void Scanner::ClearReplies() {
  replies.Clear();
  outOfStep = false;
}

void Scanner::DropAnswer() {
  while (SendBlockPiece()) {
  }
  replies.Clear();
  blockInQueue = false;
}

// A command breaks a block off that is under way. Other unread bytes stay: the driver will take
// them for the answer to what it sends now, as with a real scanner.
void Scanner::JudgeUnread(Bytes written) {
  readingExcused = false;
  SendBlockPiece();
  if (replies.Size() == 0) {
    blockInQueue = false;
    return;
  }
  Violate("sent " + Hex(written) + " before reading the scanner's " + Hex(replies.Unread()));
  if (blockInQueue && (written[0] == kEscape || written[0] == kFileSeparator)) {
    EndTransfer();
    replies.Clear();
    blockInQueue = false;
  }
  while (SendBlockPiece()) {
  }
}

bool Scanner::SendBlockPiece() {
  const bool sent = SendMore();
  blockInQueue = blockInQueue || sent;
  return sent;
}

void Scanner::JudgeReading(std::uint32_t wanted, std::uint32_t delivered) {
  if (readingExcused) return;
  Violate("read " + std::to_string(wanted) + " bytes where the scanner has " +
          std::to_string(delivered) + " to say");
}

std::size_t Scanner::Consume(Bytes bytes) {
  if (parametersMissing > 0) return ConsumeParameters(bytes);
  if (prefixAlone) return ConsumeLetter(bytes);
  if (BlockAwaitingAnswer()) return ConsumeBlockAnswer(bytes);
  return ConsumeFirst(bytes);
}

std::size_t Scanner::ConsumeParameters(Bytes bytes) {
  const Bytes portion = bytes.first(std::min(parametersMissing, bytes.size()));
  collected.insert(collected.end(), portion.begin(), portion.end());
  parametersMissing -= portion.size();
  if (parametersMissing == 0) ExecuteWithParameters();
  return portion.size();
}

void Scanner::ExecuteWithParameters() {
  if (defects.nakParameters == command.letter) {
    Refuse("defect: NAK to the parameters of " + command.Name());
    return;
  }
  Execute(command.prefix, command.letter, collected);
  if (defects.lateNak != command.letter) return;
  Answer(kNak);
  ExcuseOutOfStep();
}

std::size_t Scanner::ConsumeLetter(Bytes bytes) {
  command = {*prefixAlone, bytes[0]};
  prefixAlone.reset();
  Begin(ParameterBytes(command.prefix, command.letter));
  return 1;
}

void Scanner::Begin(const std::optional<std::uint32_t>& parameterBytes) {
  if (!parameterBytes) {
    if (defects.SpoilProbe()) ExcuseOutOfStep();
    Violate("expected a command that the scanner knows, got " + command.Name());
    Refuse("unknown command " + command.Name());
  } else if (defects.nakCommand == command.letter) {
    Refuse("defect: NAK to " + command.Name());
    ExcuseReading();
  } else if (*parameterBytes == 0) {
    Execute(command.prefix, command.letter, {});
  } else {
    parametersMissing = *parameterBytes;
    collected.clear();
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
      prefixAlone = bytes[0];
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
