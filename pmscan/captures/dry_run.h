#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "capture/decode/decode_commands.h"
#include "pmscan/report/json_report.h"
#include "transport/raw_device.h"

namespace pmscan {

// What the module sent: a command with its parameters, or bytes that are none.
struct SentCommand {
  std::vector<std::uint8_t> bytes;
  std::vector<std::uint8_t> parameters;
  const capture::CommandRow* row = nullptr;  // null for bytes that are no command
};

// Stands before a scanner, keeps what is sent to it, and lets no scan start: the command that would
// start one is kept, not passed on, and fails; so does all that comes after it.
class DryRunDevice final : public pmddb832::RawDevice {
 public:
  // `passedDevice` outlives this.
  explicit DryRunDevice(pmddb832::StillImageDevice& passedDevice) : device_(passedDevice) {}

  const std::vector<SentCommand>& Sent() const { return sent_; }
  // Whether all was sent that comes before a scan, and its start.
  bool HasReachedStart() const { return hasStarted_; }

  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) override;
  std::int32_t RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) override;

 private:
  pmddb832::StillImageDevice& device_;
  std::vector<SentCommand> sent_;
  bool hasStarted_ = false;
};

// Every command by its name with its bytes, and its parameters one by one.
std::string DryRunReport(const std::vector<SentCommand>& commands);
Json DryRunJson(const std::vector<SentCommand>& commands);

// "ESC C colour mode"; the control byte's name, or "bytes" for what is no command.
std::string NameOf(const SentCommand& command);

// "1B 49 0A".
std::string AllHex(const std::vector<std::uint8_t>& bytes);

}  // namespace pmscan
