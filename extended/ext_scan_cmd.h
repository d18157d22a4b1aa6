#pragma once

#include <cstdint>
#include <memory>

#include "extended/block_stream.h"
#include "extended/scan_plan.h"
#include "extended/scanner_facts.h"
#include "imaging/band.h"
#include "transport/general_cmd.h"
#include "wire/identity_block.h"
#include "wire/parameter_block.h"
#include "wire/status_block.h"
#include "wire/transfer_header.h"
#include "wire/wire_block.h"

namespace pmddb832 {

// The command set of scanners that answer the extended commands (FS and a letter). Operations
// return 1 for success and 0 for failure unless stated; the reason of a failure is kept for
// GetLastError.
class ExtScanCmd final : public GeneralCmd {
 public:
  // `option` is the creator's probe option. The creator calls InitWorkArea next.
  explicit ExtScanCmd(std::uint8_t option);
  ~ExtScanCmd();

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
  std::uint8_t SetFocusPos(Call& call, std::uint32_t mode, std::uint8_t position) override;
  std::uint32_t GetScanPaperSize(Call& call, std::uint32_t option, std::uint32_t* width,
                                 std::uint32_t* height) override;
  std::uint32_t InitWorkArea() override;

 private:
  // identification.cpp
  std::uint32_t BildScannerInfo(Call& call);
  bool ReadIdentity(Call& call);
  bool FindOptionUnit(Call& call);

  // queries.cpp
  std::uint8_t ExeSetFocusPos(Call& call, std::uint32_t mode, std::uint8_t positionByte);

  // scan_setup.cpp
  std::uint32_t SetupScanParameter(Call& call);
  bool SendGamma(Call& call);
  bool SendColourCorrection(Call& call);
  bool SendParameters(Call& call);

  // acquisition.cpp
  bool Deliver(Call& call, std::uint32_t setUp, const Band& rows);
  bool StartTransfer(Call& call);
  bool FinishPage(Call& call);

  // Allocated by InitWorkArea.
  struct WorkAreas {
    std::unique_ptr<IdentityBlock> identity;  // the last one that can be used
    std::unique_ptr<StatusBlock> status;
    std::unique_ptr<ParameterBlock> parameters;
    std::unique_ptr<TransferHeader> blockInfo;
  };

  bool opened_ = false;
  // Nobody reads these two; without memory for them a scanner cannot be opened.
  std::unique_ptr<std::uint16_t[]> colorOrder_;  // 1 to 8
  std::unique_ptr<std::uint8_t[]> spare6_;
  WorkAreas work_;
  ReplyBuffer replyBuffer_{};
  ExtScannerFacts facts_;
  ExtScanPlan plan_;
  ExtBlockStream stream_;
  ProgressCallback progress_ = nullptr;
};

}  // namespace pmddb832
