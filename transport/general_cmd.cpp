#include "transport/general_cmd.h"

#include <algorithm>
#include <new>

#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "wire/protocol_bytes.h"
#include "wire/wire_block.h"

namespace pmddb832 {
namespace {

struct GammaRow {
  std::uint16_t gamma;  // times 100
  std::uint8_t code;
};
constexpr std::array<GammaRow, 5> kGammaTable{
    {{100, 0x01}, {220, 0x02}, {300, 0x00}, {280, 0x10}, {250, 0x20}}};
constexpr std::uint8_t kDefaultGammaCode = 0x02;

struct HalftoneRow {
  std::uint8_t code;
  std::uint8_t minimumLevel;  // level digit from which on the row is supported
};
constexpr std::array<HalftoneRow, 10> kHalftoneTable{{{0x01, 1},
                                                      {0x00, 1},
                                                      {0x10, 1},
                                                      {0x20, 1},
                                                      {0x80, 4},
                                                      {0x90, 4},
                                                      {0xA0, 4},
                                                      {0xB0, 4},
                                                      {0x03, 5},
                                                      {0x00, 6}}};

constexpr std::uint8_t kNoFocusPosition = 0xFF;
constexpr std::uint8_t kFocusFailed = 0x01;  // bit of the first data byte

}  // namespace

std::uint8_t HalftoneCode(std::int32_t row) {
  const bool listed = row >= 0 && row < static_cast<std::int32_t>(kHalftoneTable.size());
  return kHalftoneTable[listed ? static_cast<std::size_t>(row) : 0].code;
}

GeneralCmd::GeneralCmd(std::uint8_t option)
    : transport_(new (std::nothrow) LocalType), option_(option) {
  const TraceScope trace{"Sgeneral::GeneralCmd::GeneralCmd"};
}

GeneralCmd::~GeneralCmd() {
  const TraceScope trace{"Sgeneral::GeneralCmd::~GeneralCmd"};
}

std::uint32_t GeneralCmd::InitWorkArea() {
  const TraceScope trace{"Sgeneral::GeneralCmd::InitWorkArea"};
  return 1;
}

std::uint32_t GeneralCmd::SendEscCode(std::uint8_t letter) {
  const TraceScope trace{"Sgeneral::GeneralCmd::SendEscCode"};
  if (letter == 'G') NoteScanStarted();
  return transport_->SendEscCode(letter);
}

std::uint32_t GeneralCmd::SendAck(std::uint8_t code) {
  const TraceScope trace{"Sgeneral::GeneralCmd::SendAck"};
  return transport_->SendAck(code);
}

std::uint32_t GeneralCmd::CheckAck() {
  const TraceScope trace{"Sgeneral::GeneralCmd::CheckAck"};
  return transport_->CheckAck();
}

std::uint32_t GeneralCmd::FeedPaper() {
  const TraceScope trace{"Sgeneral::GeneralCmd::FeedPaper"};
  if (paperFed_ != 0 && scanStarted_ == 0) return 0;
  if (transport_->FeedPaper() == 0) return 0;
  paperFed_ = 1;
  scanStarted_ = 0;
  return 1;
}

std::uint32_t GeneralCmd::EjectPage() {
  const TraceScope trace{"Sgeneral::GeneralCmd::EjectPage"};
  if (paperFed_ != 0 || scanStarted_ == 0) return 0;
  if (transport_->EjectPage() == 0) return 0;
  scanStarted_ = 0;
  return 1;
}

std::uint32_t GeneralCmd::ResetScanner() {
  const TraceScope trace{"Sgeneral::GeneralCmd::ResetScanner"};
  paperFed_ = 0;
  scanStarted_ = 0;
  return SendEscCode('@') == 0 ? 0 : CheckAck();
}

std::uint8_t GeneralCmd::SetGamma(std::uint16_t gamma) {
  const TraceScope trace{"Sgeneral::GeneralCmd::SetGamma"};
  for (const GammaRow& row : kGammaTable) {
    if (row.gamma == gamma) return row.code;
  }
  return kDefaultGammaCode;
}

std::uint16_t GeneralCmd::GetHalfTones() {
  const TraceScope trace{"Sgeneral::GeneralCmd::GetHalfTones"};
  const int level = static_cast<std::int8_t>(currentSettings->commandLevelText[1]) - '0';
  std::uint16_t count = 0;
  while (count < kHalftoneTable.size() && kHalftoneTable[count].minimumLevel <= level) ++count;
  return count;
}

std::uint32_t GeneralCmd::SendEscBlock(std::uint8_t letter, std::span<const std::uint8_t> block) {
  if (SendEscCode(letter) == 0 || CheckAck() == 0) return 0;
  if (transport_->Write(block) == 0) return 0;
  return CheckAck();
}

std::uint32_t GeneralCmd::SendEscTable(std::uint8_t letter, std::uint8_t prefix,
                                       std::span<const std::uint8_t> table) {
  if (prefix == kNoPrefix) return SendEscBlock(letter, table);
  std::array<std::uint8_t, kLongestTable + 1> block{prefix};
  const auto end = std::copy(table.begin(), table.end(), block.begin() + 1);
  return SendEscBlock(letter, {block.begin(), end});
}

std::uint8_t GeneralCmd::ReadFocusPosition() {
  ReplyHeader header{};
  if (SendEscCode('q') == 0 || transport_->Read(header) == 0 || Get(header, kReplyStx) != kStx) {
    return kNoFocusPosition;
  }
  const std::uint16_t count = Get(header, kReplyCount);
  if (count > replyBuffer_.size() || transport_->Read(std::span{replyBuffer_}.first(count)) == 0) {
    return kNoFocusPosition;
  }
  const bool found = count >= 2 && (replyBuffer_[0] & kFocusFailed) == 0;
  return found ? replyBuffer_[1] : kNoFocusPosition;
}

void GeneralCmd::NoteScanStarted() {
  paperFed_ = 0;
  scanStarted_ = 1;
}

}  // namespace pmddb832
