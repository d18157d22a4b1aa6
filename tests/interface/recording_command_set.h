#pragma once

#include <cstdint>
#include <string>

#include "transport/general_cmd.h"

namespace pmddb832::tests {

// A command set that does nothing but note how it is called. Its results are set by the test.
class RecordingCommandSet final : public GeneralCmd {
 public:
  RecordingCommandSet() : GeneralCmd(0) {}

  std::string calls;  // "EnableOption 2; Close; "
  std::uint32_t result = 0;
  std::uint8_t position = 0;

  std::uint32_t EnableOption(Call& call, std::uint32_t value) override;
  void Close(Call& call) override;
  std::uint32_t Open(Call& call) override;
  std::uint32_t GetLastError() override;
  std::uint32_t AbortScan(Call& call) override;
  void InitAcquire(Call& call, std::uint32_t outputFormat, ProgressCallback progress,
                   AcquisitionSetup* setup) override;
  void AcquireImage(Call& call, std::uint8_t* buffer, std::uint32_t bufferBytes,
                    AcquisitionBand* band) override;
  std::uint32_t GetOptionStatus(Call& call, std::uint8_t* mainStatus,
                                std::uint32_t option) override;
  std::uint8_t SetFocusPos(Call& call, std::uint32_t mode, std::uint8_t hostPosition) override;
  std::uint32_t GetScanPaperSize(Call& call, std::uint32_t option, std::uint32_t* width,
                                 std::uint32_t* height) override;

  // Pointers that came with the last call.
  ProgressCallback progress = nullptr;
  AcquisitionSetup* setup = nullptr;
  std::uint8_t* buffer = nullptr;
  AcquisitionBand* band = nullptr;
  std::uint32_t* width = nullptr;
  std::uint32_t* height = nullptr;
  bool mainStatusGiven = false;

 private:
  std::uint32_t Note(const std::string& call);
};

}  // namespace pmddb832::tests
