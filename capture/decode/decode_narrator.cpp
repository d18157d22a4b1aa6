#include "capture/decode/decode_narrator.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "capture/conversation/captured_conversation.h"
#include "capture/decode/decode_commands.h"
#include "capture/decode/decode_replies.h"
#include "capture/decode/result_words.h"
#include "capture/file/number_text.h"

namespace capture {
namespace {

constexpr std::uint64_t kNoticedWait = 1'000'000;  // microseconds
constexpr std::size_t kLongestInLine = 80;

std::string WaitText(std::uint64_t microseconds) {
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "after %.1f s",
                static_cast<double>(microseconds) / 1'000'000);
  return text.data();
}

// A parameter of one field needs no name behind that of its command.
std::string OneLine(const std::vector<FieldRow>& rows) {
  return rows.size() == 1 ? rows.front().value : Joined(rows);
}

bool HasTrouble(const std::vector<FieldRow>& rows) {
  return std::any_of(rows.begin(), rows.end(), [](const FieldRow& row) { return row.isTrouble; });
}

}  // namespace

Part Narrator::Take(const Transfer& transfer, std::uint32_t line) {
  currentLine_ = line;
  const bool isWrite = transfer.direction == Direction::kToScanner;
  const Part part = isWrite ? TakeWrite(transfer) : TakeRead(transfer);
  ++current_->transfers;
  lastMicroseconds_ = transfer.microseconds;
  return part;
}

std::vector<Exchange> Narrator::Release() {
  if (current_.has_value()) exchanges_.push_back(*std::exchange(current_, std::nullopt));
  return std::exchange(exchanges_, {});
}

void Narrator::Begin(std::string title) {
  if (current_.has_value()) exchanges_.push_back(*std::move(current_));
  current_ = Exchange{};
  current_->title = std::move(title);
  current_->line = currentLine_;
}

void Narrator::BeginBlock(const PictureBlock& block) {
  Begin(DescribePlace(block));
  current_->block = block.number;
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
  std::vector<FieldRow>& before = told_[conversation_.Command()];
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

// A call may begin in the midst of a command.
Part Narrator::TakeWrite(const Transfer& transfer) {
  const Bytes bytes = transfer.Kept();
  // Once it is answered, the next block is the one under way.
  const std::optional<PictureBlocks> picture = conversation_.Picture();
  Part part = Follow(conversation_, transfer);
  if (part == Part::kParameters && !conversation_.IsWhole()) part = Part::kStray;
  if (part == Part::kParameters) {
    if (!current_.has_value()) Begin(NameOf(*conversation_.Command()));
    AddFields(DescribeParameters(*conversation_.Command(), bytes), bytes.size());
  } else if (part == Part::kCommand) {
    Begin(NameOf(*conversation_.Command()));
  } else if (part == Part::kBlockAnswer) {
    TellBlockAnswer(bytes[0], picture->Block());
  } else if (part == Part::kControl) {
    Begin(*ControlName(bytes[0]));
  } else {
    TellStrayWrite(bytes);
  }
  if (transfer.result < 0) AddTrouble("the write failed (" + ResultText(transfer.result) + ")");
  return part;
}

void Narrator::TellBlockAnswer(std::uint8_t byte, const PictureBlock& block) {
  if (!current_.has_value()) BeginBlock(block);
  AddPart(*ControlName(byte));
}

// The module sends parameters at once: a piece of them is not what was asked for.
void Narrator::TellStrayWrite(Bytes bytes) {
  const std::optional<std::string> name = bytes.size() == 1 ? ControlName(bytes[0]) : std::nullopt;
  Begin("sent " + name.value_or(Counted(bytes.size(), "byte") + ", " + HexText(bytes)));
  AddTrouble("nothing asked for it");
  conversation_.Break();
}

// What a call left unread belongs to no exchange of the next one.
Part Narrator::TakeRead(const Transfer& transfer) {
  if (conversation_.AwaitsPicture()) return TakePicture(transfer);
  const Part part = current_.has_value() ? Follow(conversation_, transfer) : Part::kStray;
  if (part == Part::kStray) {
    TellStrayRead(transfer);
    return part;
  }
  NoteWait(transfer);
  const bool hasBytes = NoteReadFailure(transfer);
  if (hasBytes && part == Part::kReply) TellReply();
  if (hasBytes && part == Part::kAcknowledge) Add(DescribeAcknowledge(transfer.bytes->front()));
  return part;
}

// True when there are bytes to look at.
bool Narrator::NoteReadFailure(const Transfer& transfer) {
  const std::string came =
      std::to_string(transfer.delivered) + " of " + Counted(transfer.requested, "byte") + " came";
  if (transfer.result < 0) {
    AddTrouble("the read failed (" + ResultText(transfer.result) + "), " + came);
    return false;
  }
  if (transfer.delivered < transfer.requested) AddTrouble("only " + came);
  return transfer.delivered > 0 && transfer.bytes.has_value();
}

void Narrator::TellReply() {
  if (!conversation_.IsWhole()) return;
  const std::vector<std::uint8_t>& reply = conversation_.Message();
  AddFields(DescribeReply(conversation_.Command()->reply, reply), reply.size());
}

Part Narrator::TakePicture(const Transfer& transfer) {
  const Part part = Follow(conversation_, transfer);
  const PictureBlocks& picture = *conversation_.Picture();
  const bool isBegun = current_.has_value() && current_->block == picture.Block().number;
  if (!isBegun) BeginBlock(picture.Block());
  NoteWait(transfer);
  const bool hasFailed = transfer.result < 0;
  if (hasFailed || transfer.delivered < transfer.requested) NoteReadFailure(transfer);
  if (hasFailed || transfer.delivered == 0) return part;
  if (part == Part::kBlock) {
    for (const FieldRow& row : DescribeBlock(picture.Block())) Add(row);
  } else if (picture.Next() == PictureBlocks::Step::kNone) {
    AddTrouble(DescribeBadHeader(transfer.Kept()));
  }
  return part;
}

void Narrator::TellStrayRead(const Transfer& transfer) {
  Begin("read " + Counted(transfer.delivered, "byte"));
  if (transfer.bytes.has_value()) AddPart(HexText(*transfer.bytes));
  AddTrouble("nothing was to be read");
  if (transfer.result < 0) AddTrouble("the read failed (" + ResultText(transfer.result) + ")");
}

}  // namespace capture
