#include "capture/decode/decode_narrator.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "capture/decode/decode_replies.h"
#include "wire/protocol_bytes.h"

namespace capture {
namespace {

constexpr std::uint64_t kNoticedWait = 1'000'000;  // microseconds
constexpr std::size_t kLongestInLine = 80;

std::string ResultText(std::int32_t result) {
  return HexNumber(static_cast<std::uint32_t>(result));
}

std::string WaitText(std::uint64_t microseconds) {
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "after %.1f s",
                static_cast<double>(microseconds) / 1'000'000);
  return text.data();
}

// A parameter of one field needs no name behind that of its command.
std::string OneLine(const std::vector<FieldRow>& rows) {
  if (rows.size() == 1) return rows.front().value;
  std::string text;
  for (const FieldRow& row : rows) text.append(text.empty() ? "" : ", ").append(row.OneLine());
  return text;
}

bool HasTrouble(const std::vector<FieldRow>& rows) {
  return std::any_of(rows.begin(), rows.end(), [](const FieldRow& row) { return row.isTrouble; });
}

bool IsAnswerToBlock(std::uint8_t byte) {
  return byte == pmddb832::kAck || byte == pmddb832::kCan;
}

}  // namespace

void Narrator::Take(const Transfer& transfer, std::uint32_t line) {
  currentLine = line;
  if (transfer.direction == Direction::kToScanner) {
    TakeWrite(transfer);
  } else {
    TakeRead(transfer);
  }
  lastMicroseconds = transfer.microseconds;
}

std::vector<Exchange> Narrator::Release() {
  if (current.has_value()) exchanges.push_back(*std::exchange(current, std::nullopt));
  return std::exchange(exchanges, {});
}

void Narrator::Begin(std::string title) {
  if (current.has_value()) exchanges.push_back(*std::move(current));
  current = Exchange{};
  current->title = std::move(title);
}

void Narrator::BeginBlock() {
  Begin(blocks->Title());
  current->block = blocks->Number();
}

void Narrator::Add(const FieldRow& row) {
  if (!row.value.empty()) AddPart(row.value);
  if (row.isTrouble) NoteTrouble();
}

void Narrator::NoteTrouble() {
  if (!current->hasTrouble) current->line = currentLine;
  current->hasTrouble = true;
}

void Narrator::AddTrouble(const std::string& part) {
  Add({"", part, true});
}

// Short fields are told within the line, and long ones in rows of their own, but only when they say
// something new.
void Narrator::AddFields(const std::vector<FieldRow>& rows, std::size_t blockBytes) {
  if (const std::string line = OneLine(rows); line.size() <= kLongestInLine) {
    Add({"", line, HasTrouble(rows)});
    return;
  }
  AddPart(Counted(blockBytes, "byte"));
  std::vector<FieldRow>& before = told[command];
  if (rows == before && !HasTrouble(rows)) {
    AddPart("the same as before");
    return;
  }
  before = rows;
  current->rows = rows;
  if (HasTrouble(rows)) NoteTrouble();
}

void Narrator::NoteWait(const Transfer& transfer) {
  const bool isForward = transfer.microseconds > lastMicroseconds;
  const std::uint64_t wait = isForward ? transfer.microseconds - lastMicroseconds : 0;
  if (lastMicroseconds != 0 && wait >= kNoticedWait) AddPart(WaitText(wait));
}

void Narrator::TakeWrite(const Transfer& transfer) {
  const std::vector<std::uint8_t> bytes = transfer.bytes.value_or(std::vector<std::uint8_t>{});
  const bool isBlock = expected == Expected::kParameters && bytes.size() == command->parameterBytes;
  if (isBlock) {
    TakeParameters(bytes);
  } else if (const CommandRow* const row = FindCommand(bytes); row != nullptr) {
    BeginCommand(*row);
  } else if (bytes.size() == 1) {
    TakeControl(bytes[0]);
  } else {
    TakeStrayWrite(bytes);
  }
  if (transfer.result < 0) {
    AddTrouble("the write failed (" + ResultText(transfer.result) + ")");
    expected = Expected::kNothing;
  }
}

void Narrator::BeginCommand(const CommandRow& row) {
  command = &row;
  Begin(Letters(row) + " " + std::string(row.name));
  reply.clear();
  blocks.reset();
  expected =
      row.reply == ReplyKind::kAcknowledge ? Expected::kCommandAcknowledge : Expected::kReply;
  if (row.reply == ReplyKind::kAcknowledge && row.parameterBytes == 0) {
    expected = Expected::kAcknowledge;
    plan = {};
  }
  if (row.reply == ReplyKind::kBlockHeader && plan.startIsRepeated && !plan.linesAtOnce) {
    blocks = MakeStandardBlocks(plan, {});
    expected = Expected::kNothing;
  }
}

void Narrator::TakeParameters(Bytes block) {
  plan.Note(*command, block);
  const std::vector<FieldRow> rows = DescribeParameters(*command, block);
  AddFields(rows, block.size());
  expected = Expected::kAcknowledge;
}

void Narrator::TakeControl(std::uint8_t byte) {
  const std::optional<std::string> name = ControlName(byte);
  const bool awaitsAnswer = blocks != nullptr && blocks->Expected() == BlockSequence::Next::kAnswer;
  if (awaitsAnswer && IsAnswerToBlock(byte)) {
    if (!current.has_value()) BeginBlock();
    AddPart(*name);
    if (byte == pmddb832::kAck) {
      blocks->TakeAnswer();
      return;
    }
    blocks.reset();
    expected = Expected::kAcknowledge;
  } else if (byte == pmddb832::kEm || byte == pmddb832::kFf) {
    Begin(*name);
    expected = Expected::kAcknowledge;
  } else {
    TakeStrayWrite(std::span(&byte, 1));
  }
}

void Narrator::TakeStrayWrite(Bytes bytes) {
  const std::optional<std::string> name = bytes.size() == 1 ? ControlName(bytes[0]) : std::nullopt;
  Begin("sent " + name.value_or(Counted(bytes.size(), "byte") + ", " + HexText(bytes)));
  AddTrouble("nothing asked for it");
  expected = Expected::kNothing;
}

void Narrator::TakeRead(const Transfer& transfer) {
  if (AwaitsBlock()) {
    TakeImage(transfer);
    return;
  }
  if (!current.has_value() || expected == Expected::kNothing || expected == Expected::kParameters) {
    TakeStrayRead(transfer);
    return;
  }
  NoteWait(transfer);
  if (!NoteReadFailure(transfer)) return;
  const Bytes bytes = *transfer.bytes;
  if (expected == Expected::kReply || expected == Expected::kReplyData) {
    TakeReply(bytes);
  } else {
    TakeAcknowledge(bytes);
  }
}

bool Narrator::AwaitsBlock() const {
  if (blocks == nullptr || expected != Expected::kNothing) return false;
  const BlockSequence::Next next = blocks->Expected();
  return next == BlockSequence::Next::kHeader || next == BlockSequence::Next::kBlock;
}

// True when there are bytes to look at.
bool Narrator::NoteReadFailure(const Transfer& transfer) {
  const std::string came =
      std::to_string(transfer.delivered) + " of " + Counted(transfer.requested, "byte") + " came";
  if (transfer.result < 0) {
    AddTrouble("the read failed (" + ResultText(transfer.result) + "), " + came);
    expected = Expected::kNothing;
    return false;
  }
  if (transfer.delivered < transfer.requested) AddTrouble("only " + came);
  const bool hasBytes = transfer.delivered > 0 && transfer.bytes.has_value();
  if (!hasBytes) expected = Expected::kNothing;
  return hasBytes;
}

void Narrator::TakeAcknowledge(Bytes bytes) {
  const FieldRow answer = DescribeAcknowledge(bytes[0]);
  Add(answer);
  const bool wasLetter =
      std::exchange(expected, Expected::kNothing) == Expected::kCommandAcknowledge;
  if (wasLetter && !answer.isTrouble) expected = Expected::kParameters;
}

void Narrator::TakeReply(Bytes bytes) {
  reply.insert(reply.end(), bytes.begin(), bytes.end());
  const bool wasHeader = expected == Expected::kReply;
  if (wasHeader && DeclaredDataBytes(command->reply, reply) > 0) {
    expected = Expected::kReplyData;
    return;
  }
  expected = Expected::kNothing;
  FinishReply();
}

void Narrator::FinishReply() {
  const std::vector<FieldRow> rows = DescribeReply(command->reply, reply);
  AddFields(rows, reply.size());
  BeginImage();
}

void Narrator::BeginImage() {
  if (command->reply == ReplyKind::kTransferHeader) {
    blocks = MakeExtendedBlocks(plan, reply);
  } else if (command->reply == ReplyKind::kBlockHeader) {
    blocks = MakeStandardBlocks(plan, reply);
    plan.startIsRepeated = blocks->Expected() == BlockSequence::Next::kNothing;
  }
}

void Narrator::TakeImage(const Transfer& transfer) {
  const bool isHeader = blocks->Expected() == BlockSequence::Next::kHeader;
  const bool isBegun = current.has_value() && current->block == blocks->Number();
  if (!isBegun) BeginBlock();
  NoteWait(transfer);
  std::vector<FieldRow> rows;
  if (transfer.result < 0 || transfer.delivered == 0) {
    NoteReadFailure(transfer);
    blocks.reset();
    return;
  }
  if (transfer.delivered < transfer.requested) NoteReadFailure(transfer);
  if (isHeader) {
    rows = blocks->TakeHeader(transfer.bytes.value_or(std::vector<std::uint8_t>{}));
  } else {
    rows = blocks->TakeBlock(transfer.delivered, transfer.bytes.has_value() ? transfer.bytes->back()
                                                                            : transfer.lastByte);
  }
  for (const FieldRow& row : rows) Add(row);
}

void Narrator::TakeStrayRead(const Transfer& transfer) {
  Begin("read " + Counted(transfer.delivered, "byte"));
  if (transfer.bytes.has_value()) AddPart(HexText(*transfer.bytes));
  AddTrouble("nothing was to be read");
  if (transfer.result < 0) AddTrouble("the read failed (" + ResultText(transfer.result) + ")");
}

}  // namespace capture
