#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "fuzz/fuzz_device.h"
#include "interface/scanner_settings.h"
#include "transport/acquisition_records.h"

namespace pmddb832::fuzz {

// Numbers taken from the front of a fuzz target's input; 0 when it is used up.
class Input {
 public:
  explicit Input(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
  std::uint8_t Byte();
  std::uint16_t Word();
  std::span<const std::uint8_t> Take(std::size_t count);
  std::span<const std::uint8_t> Rest() const { return bytes_; }

 private:
  std::span<const std::uint8_t> bytes_;
};

// Bytes of the choices in front of a scan's input, and of the record in front of a record's.
inline constexpr std::size_t kScanChoiceBytes = 32;

// The settings that the choices stand for: any scan that a host may ask for, in sizes that a fuzz
// target can afford.
void ApplyScanChoices(Input& input, ScannerSettings& settings);

// A host that loads the module, and unloads it at the end of the scope.
class FuzzHost {
 public:
  explicit FuzzHost(std::span<const std::uint8_t> answers);
  ~FuzzHost();
  FuzzHost(const FuzzHost&) = delete;
  FuzzHost& operator=(const FuzzHost&) = delete;

  void Open();
  // Sets a scan up and acquires it in buffers of exactly `rows` announced lines, at most 64.
  void Scan(std::uint32_t outputFormat, std::uint32_t rows);
  void SetUp(std::uint32_t outputFormat, ProgressCallback progress = nullptr);
  // False when the image is done or the call failed.
  bool Acquire(std::uint32_t rows, std::uint32_t status = 0);

  FuzzDevice device;
  ScannerSettings settings{};

 private:
  std::uint32_t lineBytes_ = 0;
};

}  // namespace pmddb832::fuzz
