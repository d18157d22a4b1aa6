#pragma once

#include <cstdint>
#include <memory>

#include "imaging/band.h"
#include "imaging/scan_plan.h"
#include "standard/block_stream.h"
#include "standard/scanner_facts.h"
#include "transport/general_cmd.h"
#include "wire/wire_block.h"

namespace pmddb832 {

// The command set of scanners that answer the standard commands (ESC and a letter) only.
// Operations return 1 for success and 0 for failure unless stated; the reason of a failure is kept
// for GetLastError.
class StdScanCmd final : public GeneralCmd {
 public:
  // `option` is the creator's probe option.
  explicit StdScanCmd(std::uint8_t option);
  ~StdScanCmd();

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

 private:
  // identification.cpp
  std::uint32_t GetScanInfo(Call& call);
  void IdentifyModel(Call& call);
  bool FindOptionUnit(Call& call);

  // queries.cpp
  AreaSize PaperSize(std::uint32_t option);
  std::uint8_t ExeSetFocusPos(Call& call, std::uint32_t mode, std::uint8_t positionByte);

  // scan_start.cpp
  void TakeScan(const ScannerSettings& settings);
  std::uint32_t InitiateScan(Call& call);
  bool CheckOptionUnit(Call& call);
  bool ChooseBlocks(Call& call);
  bool StartScanner(Call& call);
  bool RequestScan(Call& call);

  // acquisition.cpp
  bool Deliver(Call& call, std::uint32_t setUp, const Band& rows, std::uint32_t& lineCount);
  bool FinishPage(Call& call);

  bool isOpen_ = false;
  // Nobody reads it; without memory for it a scanner cannot be opened.
  std::unique_ptr<std::uint16_t[]> indexTable_;  // 1 to 8
  ReplyBuffer replyBuffer_{};
  StdScannerFacts facts_;
  ScanPlan plan_{.format = {1, 0, 1, 1}};
  StdBlockStream stream_;
  std::uint32_t linesTotal_ = 0;
  std::uint32_t linesDone_ = 0;
  ProgressCallback progress_ = nullptr;
};

}  // namespace pmddb832
