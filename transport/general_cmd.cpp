#include "transport/general_cmd.h"

#include <algorithm>
#include <array>
#include <new>

#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "wire/commands.h"
#include "wire/gamma_codes.h"
#include "wire/halftone_codes.h"

namespace pmddb832 {

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

std::uint32_t GeneralCmd::SendEscCode(Call& call, std::uint8_t letter) {
  const TraceScope trace{"Sgeneral::GeneralCmd::SendEscCode"};
  if (letter == esc::kStart) NoteScanStarted();
  return transport_->SendEscCode(call, letter);
}

std::uint32_t GeneralCmd::SendAck(Call& call, std::uint8_t code) {
  const TraceScope trace{"Sgeneral::GeneralCmd::SendAck"};
  return transport_->SendAck(call, code);
}

std::uint32_t GeneralCmd::CheckAck(Call& call) {
  const TraceScope trace{"Sgeneral::GeneralCmd::CheckAck"};
  return transport_->CheckAck(call);
}

std::uint32_t GeneralCmd::FeedPaper(Call& call) {
  const TraceScope trace{"Sgeneral::GeneralCmd::FeedPaper"};
  if (!MayFeed(page_) || transport_->FeedPaper(call) == 0) return 0;
  page_ = FeederPage::kFed;
  return 1;
}

std::uint32_t GeneralCmd::EjectPage(Call& call) {
  const TraceScope trace{"Sgeneral::GeneralCmd::EjectPage"};
  if (!MayEject(page_) || transport_->EjectPage(call) == 0) return 0;
  page_ = FeederPage::kNone;
  return 1;
}

std::uint32_t GeneralCmd::ResetScanner(Call& call) {
  const TraceScope trace{"Sgeneral::GeneralCmd::ResetScanner"};
  page_ = FeederPage::kNone;
  return SendEscCode(call, esc::kReset) == 0 ? 0 : CheckAck(call);
}

std::uint8_t GeneralCmd::SetGamma(std::uint16_t gamma) {
  const TraceScope trace{"Sgeneral::GeneralCmd::SetGamma"};
  return GammaCode(gamma);
}

std::uint16_t GeneralCmd::GetHalfTones(const ScannerSettings& settings) {
  const TraceScope trace{"Sgeneral::GeneralCmd::GetHalfTones"};
  return SupportedHalftones(settings.commandLevelText[1]);
}

bool GeneralCmd::Fail(ErrorCode code) {
  lastError_ = code;
  return false;
}

std::uint32_t SendEscBlock(GeneralCmd& scanner, Call& call, std::uint8_t letter,
                           std::span<const std::uint8_t> block) {
  if (scanner.SendEscCode(call, letter) == 0 || scanner.CheckAck(call) == 0) return 0;
  if (scanner.Wire()->Write(call, block) == 0) return 0;
  return scanner.CheckAck(call);
}

std::uint32_t SendEscTable(GeneralCmd& scanner, Call& call, std::uint8_t letter,
                           std::uint8_t prefix, std::span<const std::uint8_t> table) {
  if (prefix == kNoPrefix) return SendEscBlock(scanner, call, letter, table);
  std::array<std::uint8_t, kLongestTable + 1> block{prefix};
  const auto end = std::copy(table.begin(), table.end(), block.begin() + 1);
  return SendEscBlock(scanner, call, letter, {block.begin(), end});
}

}  // namespace pmddb832
