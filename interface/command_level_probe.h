#pragma once

#include <array>
#include <cstdint>

#include "transport/general_cmd.h"
#include "wire/wire_block.h"

namespace pmddb832 {

// The command-level probe: asks the scanner with ESC "I" whether it understands the extended
// command set. Lives only while PMInit probes.
class Checkcmd final : public GeneralCmd {
 public:
  // Of the identification reply.
  struct LevelInfo {
    std::uint8_t status;  // bit 0x02: the extended command set is supported
    std::uint8_t letter;
    std::uint8_t digit;
  };

  explicit Checkcmd(std::uint8_t option);
  ~Checkcmd();

  // Marks the device channel open: 1 on success. Close undoes it; destruction does not.
  std::uint32_t Open(Call& call) override;
  void Close(Call& call) override;
  // 0: the probe keeps no code of its own.
  std::uint32_t GetLastError() override;

  // Runs the exchange: 1 when the scanner told its level, else 0. Data that do not fit the reply
  // buffer are read and dropped. A reply without data leaves the header's first bytes as the level.
  std::uint32_t GetLevelInfo(Call& call);
  const LevelInfo& Level() const { return level_; }

  // The rest of the interface has no meaning here and sends nothing.
  std::uint32_t EnableOption(Call& call, std::uint32_t value) override;
  std::uint32_t AbortScan(Call& call) override;
  void InitAcquire(Call& call, std::uint32_t outputFormat, ProgressCallback progress,
                   AcquisitionSetup* setup) override;
  void AcquireImage(Call& call, std::uint8_t* buffer, std::uint32_t bufferBytes,
                    AcquisitionBand* band) override;
  std::uint32_t GetOptionStatus(Call& call, std::uint8_t* mainStatus,
                                std::uint32_t option) override;
  std::uint8_t SetFocusPos(Call& call, std::uint32_t mode, std::uint8_t position) override;
  std::uint32_t GetScanPaperSize(Call& call, std::uint32_t option, std::uint32_t* width,
                                 std::uint32_t* height) override;

 private:
  bool ReadData(Call& call, std::uint32_t count);

  ReplyBuffer replyBuffer_{};
  bool opened_ = false;
  LevelInfo level_{};
};

}  // namespace pmddb832
