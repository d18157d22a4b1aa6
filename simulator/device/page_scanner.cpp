#include "simulator/device/page_scanner.h"

#include <algorithm>
#include <utility>

#include "simulator/device/protocol_bytes.h"
#include "simulator/device/status_bits.h"

namespace simulator {

PageScanner::PageScanner(Equipment fitted, const Manners& firmware, bool feederIsVariant)
    : Scanner(fitted.defects),
      source(fitted, feederIsVariant),
      equipment_(std::move(fitted)),
      manners_(firmware) {}

void PageScanner::TakeGammaTable(Bytes selectorAndTable) {
  if (gamma_.Set(selectorAndTable[0], selectorAndTable.subspan(1))) {
    gammaCame_ = true;
    Answer(kAck);
  } else {
    Refuse("no gamma table has the selector " + std::to_string(selectorAndTable[0]));
  }
}

GammaTables PageScanner::TakeGamma(std::uint8_t code) {
  const bool came = std::exchange(gammaCame_, false);
  const GammaTables downloaded = std::exchange(gamma_, {});
  return came ? downloaded : GammaTables::BuiltIn(code).value_or(GammaTables());
}

void PageScanner::TakeColorMatrix(Bytes matrix) {
  std::copy(matrix.begin(), matrix.end(), colorMatrix_.emplace().begin());
  Answer(kAck);
}

void PageScanner::SwitchOption(Bytes value) {
  const std::string reason = source.WhyImpossible(value[0]);
  if (!reason.empty()) {
    Refuse(reason);
    return;
  }
  source.Select(value[0]);
  Answer(kAck);
}

void PageScanner::Focus(Bytes position) {
  focusPosition_ = position[0];
  Answer(kAck);
}

// Flags (bit 0: no focus found) and position.
void PageScanner::TellFocus(Bytes) {
  const std::uint8_t flags = manners_.focusFails ? 1 : 0;
  AnswerInformation(0, std::array{flags, manners_.focusFound}, defects.replyWithoutStx);
}

void PageScanner::FeedPage() {
  if (!source.HasFeeder()) {
    Refuse("no document feeder is fitted");
  } else if (!source.Feed()) {
    Refuse("the document feeder has no page that it can load");
  } else {
    Answer(kAck);
  }
}

void PageScanner::EjectPage() {
  if (source.Eject()) {
    AcknowledgeEject();
  } else {
    Refuse("the document feeder has no page that it can eject");
  }
}

void PageScanner::AcknowledgeEject() {
  ++ejects_;
  Answer(kAck);
}

void PageScanner::TellLevelData(std::uint8_t status, std::vector<std::uint8_t> data) {
  if (defects.noProbeReply) {
    ExcuseReading();
    return;
  }
  if (defects.probeReplyBytes) {
    data.resize(*defects.probeReplyBytes & 0xFFFF);
    ExcuseOutOfStep();
  }
  AnswerInformation(status, data, defects.probeReplyWithoutStx);
}

void PageScanner::Forget() {
  EndTransfer();
  ClearReplies();
  source.Select(0);
  gamma_ = {};
  gammaCame_ = false;
  colorMatrix_.reset();
  Answer(kAck);
}

std::uint8_t PageScanner::MainStatus() const {
  const int bits = (fatal_ || defects.fatalError ? status_bits::kFatalError : 0) |
                   (defects.notReady ? status_bits::kNotReady : 0) |
                   (WarmingUp() ? status_bits::kWarmingUp : 0);
  return static_cast<std::uint8_t>(bits);
}

void PageScanner::CountStatusPoll() {
  if (WarmingUp()) ++statusPolls_;
}

std::string PageScanner::WhyTransferRefused() {
  if (MainStatus() != 0) return "the scanner is warming up, not ready or broken";
  if (transfersRefused_ < manners_.refusedTransfers) {
    ++transfersRefused_;
    return "the firmware refuses the first transfers";
  }
  return source.WhyNoDocument();
}

void PageScanner::Begin(std::unique_ptr<BlockTransfer> started) {
  transfer_ = std::move(started);
  if (defects.DisturbBlocks()) ExcuseOutOfStep();
}

bool PageScanner::SendMore() {
  if (transfer_ == nullptr) return false;
  if (transfer_->InLastBlock() && defects.lastBlockShorterBy) ExcuseReading();
  const bool sent = transfer_->Send(replies);
  if (transfer_->Over()) EndTransfer();
  return sent;
}

std::optional<std::uint32_t> PageScanner::BlockAwaitingAnswer() const {
  if (transfer_ == nullptr || !transfer_->AwaitsAnswer()) return std::nullopt;
  return transfer_->BlockNumber();
}

void PageScanner::ContinueTransfer() {
  transfer_->Continue();
  if (transfer_->Over()) EndTransfer();
}

void PageScanner::EndTransfer() {
  if (transfer_ == nullptr) return;
  fatal_ = fatal_ || transfer_->EndedFatally();
  source.ScanEnded(transfer_->Jammed());
  transfer_.reset();
}

}  // namespace simulator
