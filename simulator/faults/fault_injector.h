#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "simulator/device/scanner.h"
#include "simulator/faults/conversation_tracker.h"
#include "simulator/faults/fault.h"
#include "transport/raw_device.h"

namespace simulator {

// The cable to a simulated scanner of either family, on which its own faults and those of a script
// strike. Of several at one place the first one strikes, and those of the scanner come first. Bytes
// are counted at the scanner's end, both directions together. What comes of a fault is not held
// against the driver; after a hold alone the conversation stays in order, and it is.
class FaultInjector final : public pmddb832::RawDevice {
 public:
  // The scanner outlives this.
  FaultInjector(Scanner& soundScanner, std::vector<Fault> scriptedFaults);

  // Where those faults were scripted that did not strike, as in "jam.json:7"; those of the scanner
  // stand nowhere.
  std::vector<std::string> Unreached() const;

  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) override;
  std::int32_t RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) override;

 private:
  struct Scripted {
    Fault fault;
    bool struck = false;
  };

  // The fault that strikes at a transfer of `count` bytes; null when none does.
  const Fault* Strike(const ConversationPlace& place, std::uint32_t count);
  bool IsAt(const Scripted& scripted, const ConversationPlace& place, std::uint32_t count) const;
  // How many of `count` bytes pass before the cable is out.
  std::uint32_t Passing(std::uint32_t count) const;
  std::int32_t ReadWith(const Fault* fault, std::uint8_t* bytes, std::uint32_t& count);
  std::int32_t ReadLosing(const Fault& fault, std::uint8_t* bytes, std::uint32_t& count);
  std::int32_t ReadAnswer(std::uint8_t* bytes, std::uint32_t& count);
  std::int32_t WriteWith(const Fault& fault, std::span<std::uint8_t> bytes);
  void ReportBusy(std::span<std::uint8_t> delivered);
  void EndAnswer();
  std::int32_t FromScanner(std::uint8_t* bytes, std::uint32_t& count);
  std::int32_t ToScanner(std::span<std::uint8_t> bytes);

  Scanner& scanner_;
  std::vector<Scripted> faults_;
  ConversationTracker tracker_;
  // What is left of a scripted answer, until the driver writes.
  std::optional<std::vector<std::uint8_t>> answer_;
  std::uint32_t busyPolls_ = 0;            // status replies that still report warming up
  std::uint64_t passed_ = 0;               // bytes
  std::optional<std::uint64_t> cableEnd_;  // so many pass before the cable is out
};

}  // namespace simulator
