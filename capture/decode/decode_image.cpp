#include "capture/decode/decode_image.h"

#include <algorithm>

#include "wire/block_header.h"
#include "wire/parameter_block.h"
#include "wire/parameter_fields.h"
#include "wire/protocol_bytes.h"
#include "wire/transfer_header.h"

namespace capture {
namespace {

using Bytes = std::span<const std::uint8_t>;
namespace block_of = pmddb832::block;
namespace transfer = pmddb832::transfer;

template <std::unsigned_integral T, std::size_t offset>
std::uint32_t NumberIn(Bytes bytes, pmddb832::Field<T, offset>) {
  if (bytes.size() < offset + sizeof(T)) return 0;
  return pmddb832::GetLittleEndian<T>(bytes.subspan<offset, sizeof(T)>());
}

std::vector<FieldRow> BlockRows(std::uint32_t lines, std::uint64_t bytes, const FieldRow& status) {
  std::vector<FieldRow> rows;
  if (lines != 0) rows.push_back({"lines", Counted(lines, "line")});
  rows.push_back({"bytes", Counted(bytes, "byte")});
  rows.push_back(status);
  return rows;
}

// "status ok", "status ok, last block", "status error (0x80)".
FieldRow StatusRow(std::uint8_t status, std::span<const pmddb832::ValueName> names) {
  const pmddb832::NamedField field =
      pmddb832::NamedFlags("status", pmddb832::Field<std::uint8_t, 0>{}, names);
  FieldRow row = DescribeFields(std::span(&field, 1), std::span(&status, 1)).front();
  if (status == 0) return {"status", "status ok"};
  row.value = (row.isTrouble ? "status " : "status ok, ") + row.value;
  return row;
}

void RequireLength(std::uint64_t bytes, std::uint64_t announced, std::vector<FieldRow>& rows) {
  if (bytes == announced) return;
  rows.push_back({"length", "the header announced " + Counted(announced, "byte"), true});
}

class ExtendedBlocks final : public BlockSequence {
 public:
  ExtendedBlocks(const ScanPlan& scanPlan, Bytes header)
      : BlockSequence(scanPlan),
        blockBytes_(NumberIn(header, transfer::kBlockBytes)),
        fullBlocks_(NumberIn(header, transfer::kFullBlocks)),
        lastBlockBytes_(NumberIn(header, transfer::kLastBlockBytes)) {
    const bool isGood = header.size() >= sizeof(pmddb832::TransferHeader) &&
                        header[0] == pmddb832::kStx && (header[1] & transfer::kError) == 0;
    if (isGood) next = Next::kBlock;
  }

  std::vector<FieldRow> TakeHeader(Bytes) override { return {}; }

  std::vector<FieldRow> TakeBlock(std::uint64_t bytes, std::uint8_t lastByte) override {
    const std::uint64_t dataBytes = bytes - 1;
    std::vector<FieldRow> rows =
        BlockRows(Lines(), dataBytes, StatusRow(lastByte, transfer::kStatusNames));
    RequireLength(dataBytes, IsLast() ? lastBlockBytes_ : blockBytes_, rows);
    const bool goesOn = !IsLast() && (lastByte & transfer::kError) == 0;
    next = goesOn ? Next::kAnswer : Next::kNothing;
    return rows;
  }

 protected:
  std::uint32_t Count() const override { return fullBlocks_ + (lastBlockBytes_ != 0 ? 1 : 0); }
  Next BehindAnswer() const override { return Next::kBlock; }

 private:
  bool IsLast() const { return block > fullBlocks_; }
  std::uint32_t Lines() const {
    if (!IsLast()) return plan.linesPerBlock;
    const std::uint64_t before = std::uint64_t{fullBlocks_} * plan.linesPerBlock;
    return before < plan.height ? plan.height - static_cast<std::uint32_t>(before) : 0;
  }

  const std::uint32_t blockBytes_;
  const std::uint32_t fullBlocks_;
  const std::uint32_t lastBlockBytes_;
};

class StandardBlocks final : public BlockSequence {
 public:
  StandardBlocks(const ScanPlan& scanPlan, Bytes header) : BlockSequence(scanPlan) {
    const bool isRefused =
        header.size() > 1 && (header[0] != pmddb832::kStx || (header[1] & block_of::kError) != 0);
    if (isRefused) return;
    next = Next::kHeader;
    if (plan.linesAtOnce && !header.empty()) TakeHeader(header);
  }

  std::vector<FieldRow> TakeHeader(Bytes header) override {
    next = Next::kNothing;
    status_ = static_cast<std::uint8_t>(NumberIn(header, block_of::kStatus));
    lineBytes_ = NumberIn(header, block_of::kLineBytes);
    lines_ = plan.linesAtOnce ? NumberIn(header, block_of::kLines) : 1;
    if (NumberIn(header, block_of::kStx) != pmddb832::kStx) {
      return {{"header", "header " + HexText(header) + " without STX", true}};
    }
    if (lines_ == 0) return {{"header", "header that announces no lines", true}};
    next = Next::kBlock;
    return {};
  }

  std::vector<FieldRow> TakeBlock(std::uint64_t bytes, std::uint8_t) override {
    std::vector<FieldRow> rows =
        BlockRows(lines_, bytes, StatusRow(status_, block_of::kStatusNames));
    RequireLength(bytes, std::uint64_t{lineBytes_} * lines_, rows);
    next = (status_ & block_of::kLast) != 0 ? Next::kNothing : Next::kAnswer;
    return rows;
  }

 protected:
  std::uint32_t Count() const override {
    if (!plan.linesAtOnce) return plan.height;
    if (plan.linesPerBlock == 0) return 0;
    return (plan.height + plan.linesPerBlock - 1) / plan.linesPerBlock;
  }
  Next BehindAnswer() const override { return Next::kHeader; }

 private:
  std::uint8_t status_ = 0;
  std::uint32_t lineBytes_ = 0;
  std::uint32_t lines_ = 0;
};

}  // namespace

void ScanPlan::Note(const CommandRow& command, Bytes sent) {
  const std::string letters = Letters(command);
  if (letters == "FS W") {
    linesPerBlock = NumberIn(sent, pmddb832::parameter::kLinesPerBlock);
    height = NumberIn(sent, pmddb832::parameter::kAreaHeight);
  } else if (letters == "ESC A") {
    height = NumberIn(sent, pmddb832::standard_parameter::kFourthWord);
    startIsRepeated = false;
  } else if (letters == "ESC d") {
    linesPerBlock = NumberIn(sent, pmddb832::standard_parameter::kByte);
    linesAtOnce = true;
  }
}

std::string BlockSequence::Title() const {
  const std::uint32_t count = Count();
  const std::string of = count == 0 ? "" : " of " + std::to_string(count);
  return "block " + std::to_string(block) + of;
}

void BlockSequence::TakeAnswer() {
  ++block;
  next = BehindAnswer();
}

std::unique_ptr<BlockSequence> MakeExtendedBlocks(const ScanPlan& plan, Bytes header) {
  return std::make_unique<ExtendedBlocks>(plan, header);
}

std::unique_ptr<BlockSequence> MakeStandardBlocks(const ScanPlan& plan, Bytes header) {
  return std::make_unique<StandardBlocks>(plan, header);
}

}  // namespace capture
