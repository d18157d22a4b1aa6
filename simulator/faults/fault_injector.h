#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "simulator/device/scanner.h"
#include "simulator/faults/conversation_tracker.h"
#include "simulator/faults/fault_script.h"
#include "transport/still_image_device.h"

namespace simulator {

// The cable to a simulated scanner of either family, on which the faults of a script strike. Of
// several at one place the first one strikes. What comes of a fault is not held against the
// driver; after a hold alone the conversation stays in order, and it is.
class FaultInjector final : public pmddb832::StillImageDevice {
 public:
  // The scanner outlives this.
  FaultInjector(Scanner& soundScanner, std::vector<Fault> scriptedFaults);

  // Where those faults were scripted that did not strike, as in "jam.json:7".
  std::vector<std::string> Unreached() const;

  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) override;
  std::int32_t RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) override;

  // The rest is the scanner's.
  std::int32_t QueryInterface(const void* interfaceId, void** object) override;
  std::uint32_t AddRef() override;
  std::uint32_t Release() override;
  std::int32_t Initialize(void* instance, const wchar_t* deviceName, std::uint32_t version,
                          std::uint32_t mode) override;
  std::int32_t GetCapabilities(void* capabilities) override;
  std::int32_t GetStatus(void* status) override;
  std::int32_t DeviceReset() override;
  std::int32_t Diagnostic(void* buffer) override;
  std::int32_t Escape(std::uint32_t function, const void* input, std::uint32_t inputBytes,
                      void* output, std::uint32_t outputBytes, std::uint32_t* outputUsed) override;
  std::int32_t GetLastError(std::uint32_t* error) override;
  std::int32_t LockDevice(std::uint32_t timeoutMilliseconds) override;
  std::int32_t UnLockDevice() override;

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
