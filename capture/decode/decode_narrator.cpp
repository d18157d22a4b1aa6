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
  currentLine_ = line;
  if (transfer.direction == Direction::kToScanner) {
    TakeWrite(transfer);
  } else {
    TakeRead(transfer);
  }
  lastMicroseconds_ = transfer.microseconds;
}

std::vector<Exchange> Narrator::Release() {
  if (current_.has_value()) exchanges_.push_back(*std::exchange(current_, std::nullopt));
  return std::exchange(exchanges_, {});
}

void Narrator::Begin(std::string title) {
  if (current_.has_value()) exchanges_.push_back(*std::move(current_));
  current_ = Exchange{};
  current_->title = std::move(title);
}

void Narrator::BeginBlock() {
  Begin(blocks_->Title());
  current_->block = blocks_->Number();
}

void Narrator::Add(const FieldRow& row) {
  if (!row.value.empty()) AddPart(row.value);
  if (row.isTrouble) NoteTrouble();
}

void Narrator::NoteTrouble() {
  if (!current_->hasTrouble) current_->line = currentLine_;
  current_->hasTrouble = true;
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
  std::vector<FieldRow>& before = told_[command_];
  if (rows == before && !HasTrouble(rows)) {
    AddPart("the same as before");
    return;
  }
  before = rows;
  current_->rows = rows;
  if (HasTrouble(rows)) NoteTrouble();
}

void Narrator::NoteWait(const Transfer& transfer) {
  const bool isForward = transfer.microseconds > lastMicroseconds_;
  const std::uint64_t wait = isForward ? transfer.microseconds - lastMicroseconds_ : 0;
  if (lastMicroseconds_ != 0 && wait >= kNoticedWait) AddPart(WaitText(wait));
}

void Narrator::TakeWrite(const Transfer& transfer) {
  const std::vector<std::uint8_t> bytes = transfer.bytes.value_or(std::vector<std::uint8_t>{});
  const bool isBlock =
      expected_ == Expected::kParameters && bytes.size() == command_->parameterBytes;
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
    expected_ = Expected::kNothing;
  }
}

void Narrator::BeginCommand(const CommandRow& row) {
  command_ = &row;
  Begin(Letters(row) + " " + std::string(row.name));
  reply_.clear();
  blocks_.reset();
  expected_ =
      row.reply == ReplyKind::kAcknowledge ? Expected::kCommandAcknowledge : Expected::kReply;
  if (row.reply == ReplyKind::kAcknowledge && row.parameterBytes == 0) {
    expected_ = Expected::kAcknowledge;
    plan_ = {};
  }
  if (row.reply == ReplyKind::kBlockHeader && plan_.startIsRepeated && !plan_.linesAtOnce) {
    blocks_ = MakeStandardBlocks(plan_, {});
    expected_ = Expected::kNothing;
  }
}

void Narrator::TakeParameters(Bytes block) {
  plan_.Note(*command_, block);
  const std::vector<FieldRow> rows = DescribeParameters(*command_, block);
  AddFields(rows, block.size());
  expected_ = Expected::kAcknowledge;
}

void Narrator::TakeControl(std::uint8_t byte) {
  const std::optional<std::string> name = ControlName(byte);
  const bool awaitsAnswer =
      blocks_ != nullptr && blocks_->Expected() == BlockSequence::Next::kAnswer;
  if (awaitsAnswer && IsAnswerToBlock(byte)) {
    if (!current_.has_value()) BeginBlock();
    AddPart(*name);
    if (byte == pmddb832::kAck) {
      blocks_->TakeAnswer();
      return;
    }
    blocks_.reset();
    expected_ = Expected::kAcknowledge;
  } else if (byte == pmddb832::kEm || byte == pmddb832::kFf) {
    Begin(*name);
    expected_ = Expected::kAcknowledge;
  } else {
    TakeStrayWrite(std::span(&byte, 1));
  }
}

void Narrator::TakeStrayWrite(Bytes bytes) {
  const std::optional<std::string> name = bytes.size() == 1 ? ControlName(bytes[0]) : std::nullopt;
  Begin("sent " + name.value_or(Counted(bytes.size(), "byte") + ", " + HexText(bytes)));
  AddTrouble("nothing asked for it");
  expected_ = Expected::kNothing;
}

void Narrator::TakeRead(const Transfer& transfer) {
  if (AwaitsBlock()) {
    TakeImage(transfer);
    return;
  }
  if (!current_.has_value() || expected_ == Expected::kNothing ||
      expected_ == Expected::kParameters) {
    TakeStrayRead(transfer);
    return;
  }
  NoteWait(transfer);
  if (!NoteReadFailure(transfer)) return;
  const Bytes bytes = *transfer.bytes;
  if (expected_ == Expected::kReply || expected_ == Expected::kReplyData) {
    TakeReply(bytes);
  } else {
    TakeAcknowledge(bytes);
  }
}

bool Narrator::AwaitsBlock() const {
  if (blocks_ == nullptr || expected_ != Expected::kNothing) return false;
  const BlockSequence::Next next = blocks_->Expected();
  return next == BlockSequence::Next::kHeader || next == BlockSequence::Next::kBlock;
}

// True when there are bytes to look at.
bool Narrator::NoteReadFailure(const Transfer& transfer) {
  const std::string came =
      std::to_string(transfer.delivered) + " of " + Counted(transfer.requested, "byte") + " came";
  if (transfer.result < 0) {
    AddTrouble("the read failed (" + ResultText(transfer.result) + "), " + came);
    expected_ = Expected::kNothing;
    return false;
  }
  if (transfer.delivered < transfer.requested) AddTrouble("only " + came);
  const bool hasBytes = transfer.delivered > 0 && transfer.bytes.has_value();
  if (!hasBytes) expected_ = Expected::kNothing;
  return hasBytes;
}

void Narrator::TakeAcknowledge(Bytes bytes) {
  const FieldRow answer = DescribeAcknowledge(bytes[0]);
  Add(answer);
  const bool wasLetter =
      std::exchange(expected_, Expected::kNothing) == Expected::kCommandAcknowledge;
  if (wasLetter && !answer.isTrouble) expected_ = Expected::kParameters;
}

void Narrator::TakeReply(Bytes bytes) {
  reply_.insert(reply_.end(), bytes.begin(), bytes.end());
  const bool wasHeader = expected_ == Expected::kReply;
  if (wasHeader && DeclaredDataBytes(command_->reply, reply_) > 0) {
    expected_ = Expected::kReplyData;
    return;
  }
  expected_ = Expected::kNothing;
  FinishReply();
}

void Narrator::FinishReply() {
  const std::vector<FieldRow> rows = DescribeReply(command_->reply, reply_);
  AddFields(rows, reply_.size());
  BeginImage();
}

void Narrator::BeginImage() {
  if (command_->reply == ReplyKind::kTransferHeader) {
    blocks_ = MakeExtendedBlocks(plan_, reply_);
  } else if (command_->reply == ReplyKind::kBlockHeader) {
    blocks_ = MakeStandardBlocks(plan_, reply_);
    plan_.startIsRepeated = blocks_->Expected() == BlockSequence::Next::kNothing;
  }
}

void Narrator::TakeImage(const Transfer& transfer) {
  const bool isHeader = blocks_->Expected() == BlockSequence::Next::kHeader;
  const bool isBegun = current_.has_value() && current_->block == blocks_->Number();
  if (!isBegun) BeginBlock();
  NoteWait(transfer);
  std::vector<FieldRow> rows;
  if (transfer.result < 0 || transfer.delivered == 0) {
    NoteReadFailure(transfer);
    blocks_.reset();
    return;
  }
  if (transfer.delivered < transfer.requested) NoteReadFailure(transfer);
  if (isHeader) {
    rows = blocks_->TakeHeader(transfer.bytes.value_or(std::vector<std::uint8_t>{}));
  } else {
    rows =
        blocks_->TakeBlock(transfer.delivered,
                           transfer.bytes.has_value() ? transfer.bytes->back() : transfer.lastByte);
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
