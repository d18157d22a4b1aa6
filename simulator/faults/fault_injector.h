#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "simulator/device/scanner.h"
#include "simulator/faults/conversation_tracker.h"
#include "simulator/faults/fault_script.h"
#include "transport/raw_device.h"

namespace simulator {

// The cable to a simulated scanner of either family, on which the faults of a script strike. Of
// several at one place the first one strikes. What comes of a fault is not held against the
// driver; after a hold alone the conversation stays in order, and it is.
class FaultInjector final : public pmddb832::RawDevice {
 public:
  // The scanner outlives this.
  FaultInjector(Scanner& soundScanner, std::vector<Fault> scriptedFaults);

  // Where those faults were scripted that did not strike, as in "jam.json:7".
  std::vector<std::string> Unreached() const;

  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) override;
  std::int32_t RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) override;

 private:
  struct Scripted {
    Fault fault;
    bool struck = false;
  };

  // The fault that strikes at the place; null when none does.
  const Fault* Strike(const ConversationPlace& place);
  std::int32_t ReadWith(const Fault* fault, std::uint8_t* bytes, std::uint32_t& count);
  std::int32_t ReadLosing(std::uint8_t* bytes, std::uint32_t& count, std::uint32_t most,
                          std::int32_t result);
  std::int32_t ReadAnswer(std::uint8_t* bytes, std::uint32_t& count);
  std::int32_t WriteWith(const Fault& fault, std::vector<std::uint8_t> bytes);
  void ReportBusy(std::span<std::uint8_t> delivered);
  void EndAnswer();

  Scanner& scanner_;
  std::vector<Scripted> faults_;
  ConversationTracker tracker_;
  // What is left of a scripted answer, until the driver writes.
  std::optional<std::vector<std::uint8_t>> answer_;
  std::uint32_t busyPolls_ = 0;  // status replies that still report warming up
  bool unplugged_ = false;
};

}  // namespace simulator
