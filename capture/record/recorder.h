#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "capture/file/capture.h"
#include "interface/scanner_settings.h"

namespace capture {

// Image data is what a read delivers within one of the calls that fetch the picture when it is
// longer than this. Every reply of the protocol is shorter.
inline constexpr std::uint32_t kLongestReply = 128;

// Makes entries of what happens between host, module and device, in its order. What it is told
// while no call is open is recorded all the same.
class Recorder {
 public:
  using EntrySink = std::function<void(const Entry&)>;
  // Microseconds since the start of the capture.
  using Clock = std::function<std::uint64_t()>;

  // Image data is kept as length, checksum and last byte; the bytes too when asked.
  Recorder(EntrySink entrySink, Clock captureClock, bool keepsImageData);

  // Records from here on how the settings change. They outlive the calls.
  void Watch(const pmddb832::ScannerSettings& settings) { watched_ = &settings; }

  void BeginCall(const std::string& name, const std::vector<Value>& arguments);
  void EndCall(const std::vector<Value>& results,
               const std::optional<std::uint32_t>& imageChecksum = std::nullopt);

  // `given` are all the bytes of the write.
  void AddWrite(std::span<const std::uint8_t> given, std::int32_t result);
  // `delivered` are the bytes that came of the `requested` ones.
  void AddRead(std::uint32_t requested, std::span<const std::uint8_t> delivered,
               std::int32_t result);

 private:
  void AddSettingsChanges(bool byModule);

  const EntrySink sink_;
  const Clock clock_;
  const bool keepsImageData_;
  const pmddb832::ScannerSettings* watched_ = nullptr;
  pmddb832::ScannerSettings known_{};  // what the entries so far make of a record of zeros
  std::string openCall_;               // empty while the host is not in the module
};

}  // namespace capture
