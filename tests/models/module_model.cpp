#include "tests/models/module_model.h"

#include <algorithm>

#include "tests/models/extended_set.h"
#include "tests/models/standard_set.h"

namespace pmddb832::models {

// ESC "I" without an acknowledge; the status byte of the reply says whether FS commands are known.
// A probe that fails leaves what an earlier one found out.
bool ModuleModel::ProbeExtendedSupport() {
  std::array<std::uint8_t, 150> reply{};
  if (!wire.Write({0x1B, 'I'}) || !wire.Read(std::span(reply).first(4))) return false;
  if (reply[0] != 0x02) return false;
  const std::uint8_t status = reply[1];
  std::size_t left = U16(reply, 2);
  if (left > 0x7FFF) return false;  // free choice: a negative count is not read
  do {                              // free choice: what is too much is read and dropped
    const std::size_t count = std::min(left, reply.size());
    if (!wire.Read(std::span(reply).first(count))) return false;
    left -= count;
  } while (left > 0);
  extendedSupport_ = (status & 0x02) != 0;
  return true;
}

bool ModuleModel::Open(std::uint32_t record) {
  session_.record = &records[record];
  ProbeExtendedSupport();
  if (extendedSupport_) {
    set_ = std::make_unique<ExtendedSet>(session_);
  } else {
    set_ = std::make_unique<StandardSet>(session_);
  }
  return set_->Open();
}

Outcome ModuleModel::Run(const HostCall& call) {
  Outcome outcome = Unwritten(call);
  wire.events.clear();
  wire.connected = (*session_.record)[kDeviceInterface] != nullptr;
  if (call.callee == Export::kOpenScanner) {
    wire.connected = records[call.argument][kDeviceInterface] != nullptr;
    outcome.result = Open(call.argument);
  } else if (call.callee == Export::kSetScannerHardware) {
    session_.record = &records[call.argument];
  } else if (set_ != nullptr) {  // free choice: before the first open nothing happens
    Dispatch(call, outcome);
  }
  outcome.error = set_ == nullptr ? 0 : set_->LastError();
  return outcome;
}

void ModuleModel::Dispatch(const HostCall& call, Outcome& outcome) {
  CommandSet& set = *set_;
  switch (call.callee) {
    case Export::kInitAcquire:
      return set.InitAcquire(call.argument, call.tellsProgress, outcome.setup);
    case Export::kAcquireImage:
      return set.AcquireImage(outcome.image, outcome.band);
    case Export::kAbortScan:
      return set.AbortScan();
    case Export::kCloseScanner:
      return set.Close();
    case Export::kEject:
      set.EjectPage();
      return;
    case Export::kFeed:
      set.FeedPaper();
      return;
    case Export::kReset:
      outcome.result = set.ResetScanner();
      return;
    case Export::kGetOptionStatus:
      outcome.result = set.GetOptionStatus(call.argument);
      return;
    case Export::kSetFocus:
      outcome.result = set.SetFocus(call.argument, call.position);
      return;
    case Export::kEnableOption:
      outcome.result = set.EnableOption(call.argument);
      return;
    case Export::kGetScanPaperSize:
      outcome.result = set.GetScanPaperSize(call.argument, outcome.paperWidth, outcome.paperHeight);
      return;
    default:
      return;
  }
}

}  // namespace pmddb832::models
