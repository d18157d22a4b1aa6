#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "imaging/pixel_format.h"
#include "imaging/scan_line.h"
#include "platform/process_heap.h"
#include "transport/general_cmd.h"
#include "wire/area_size.h"
#include "wire/identity_block.h"
#include "wire/parameter_block.h"
#include "wire/status_block.h"
#include "wire/transfer_header.h"

namespace pmddb832 {

inline constexpr std::uint32_t kDataBufferBytes = 0xFF00;  // largest block and its status byte
inline constexpr std::uint32_t kWidestLine = 0x7FF0;       // pixels that a line may have

// The command set of scanners that answer the extended commands (FS and a letter). Operations
// return 1 for success and 0 for failure unless stated; the reason of a failure is kept for
// GetLastError.
class ExtScanCmd final : public GeneralCmd {
 public:
  // `option` is the creator's probe option. The creator calls InitWorkArea next.
  explicit ExtScanCmd(std::uint8_t option);
  ~ExtScanCmd();

  std::uint32_t EnableOption(std::uint32_t value) override;
  void Close() override;
  std::uint32_t Open() override;
  std::uint32_t GetLastError() override;
  std::uint32_t AbortScan() override;
  void InitAcquire(std::uint32_t hostPixelType, ProgressCallback progress,
                   AcquisitionSetup* setup) override;
  void AcquireImage(std::uint8_t* buffer, std::uint32_t bufferBytes,
                    AcquisitionBand* band) override;
  std::uint32_t GetOptionStatus(std::uint8_t* mainStatus, std::uint32_t source) override;
  std::uint8_t SetFocusPos(std::uint32_t mode, std::uint8_t position) override;
  std::uint32_t GetScanPaperSize(std::uint32_t source, std::uint32_t* width,
                                 std::uint32_t* height) override;
  std::uint32_t InitWorkArea() override;

 private:
  // identification.cpp
  std::uint32_t BildScannerInfo();
  std::uint32_t ReadIdentity();
  std::uint32_t AllocateColorOrder();
  std::uint32_t StoreCommandLevel();
  std::uint32_t StoreOptionUnit();
  void StoreFeederFlags();
  void StoreAreas();
  std::uint32_t GetScannerProductName();

  // commands.cpp
  std::uint32_t SendFSCode(std::uint8_t letter);
  std::uint32_t GetStatusBuffer(StatusBlock& destination);
  std::uint32_t SendESCOneParam(std::uint8_t letter, std::uint8_t parameter);
  std::uint32_t SendCorrectionData(std::uint8_t letter, std::uint8_t selector,
                                   std::span<const std::uint8_t> data);
  std::uint32_t CheckWarmup();
  void TakeFeederArea();
  static std::uint32_t OptionUnitValue(std::uint32_t value);

  // scan_setup.cpp
  std::uint32_t LineError() const;
  void SetPixelType();

  // parameters.cpp
  std::uint32_t SetupScanParameter();
  void PutOptionUnit();
  void PutColours();
  void PutHalftoneAndOverride();
  std::uint32_t SendGamma();
  std::uint32_t SendColourCorrection();
  std::uint32_t PutArea();
  std::uint32_t PutLinesPerBlock(std::uint32_t width);
  std::uint32_t SendParameterBlock();

  // focus.cpp
  std::uint8_t ExeSetFocusPos(std::uint32_t mode, std::uint8_t positionByte);
  std::uint8_t FocusAutomatically(std::uint8_t positionByte);

  // acquisition.cpp
  std::uint32_t StartScanningProcess();
  std::uint32_t RequestTransfer();
  std::uint32_t StartTransfer();
  std::uint32_t DeliverBand(std::span<std::uint8_t> band, std::uint32_t lines);
  void ReportProgress() const;
  void ConvertScanLine(HostRow row);
  std::uint32_t FinishPage();

  // data_blocks.cpp
  std::uint32_t GetScanData();
  std::uint32_t ReceiveBlock();
  std::uint32_t AnswerBlock();
  void PointAtLine();
  void BuildTrueColor(const ScanLine& line, HostRow row, std::int16_t padPixels);

  std::uint32_t Fail(std::uint32_t code);

  std::uint32_t opened_ = 0;
  std::uint32_t abortRequested_ = 0;  // the next full block is answered with CAN
  std::uint32_t endOfData_ = 0;       // the scanner has sent its last block
  std::uint32_t transferActive_ = 0;  // the transfer of the current page was started
  std::uint32_t errorCode_ = 0;

  // Allocated by Open, given back by Close.
  std::unique_ptr<std::uint16_t[]> colorOrder_;  // 1 to 8
  std::unique_ptr<std::uint8_t[]> spare6_;
  platform::HeapBlock dataBuffer_;  // data and status byte of the block last received
  std::uint32_t dataBufferSize_ = 0;

  // Allocated by InitWorkArea.
  std::unique_ptr<IdentityBlock> identity_;  // its basic resolution is 0 until it was read
  std::unique_ptr<StatusBlock> status_;
  std::unique_ptr<ParameterBlock> parameters_;
  std::unique_ptr<TransferHeader> blockInfo_;

  // Areas in pixels at the basic resolution, from the identity.
  AreaSize flatbed_;
  AreaSize option_;
  AreaSize optionCopy_;
  std::uint8_t highBitDepth_ = 12;  // bits per sample sent for the deep pixel types

  // The scan: pixels and lines at the scan resolution.
  std::uint32_t hostPixelType_ = 0;
  std::uint32_t convertFlag_ = 0;  // the host wants its colours reordered
  std::uint32_t scanPixelType_ = 0;
  PixelFormat format_{0, 0, 1, 1};
  std::uint32_t widthPx_ = 0;
  std::uint32_t heightPx_ = 0;
  std::uint32_t areaLeftPx_ = 0;
  std::uint32_t areaTopPx_ = 0;
  std::uint32_t hostLineBytes_ = 0;
  std::uint32_t rawLineBytes_ = 0;
  std::uint16_t padPixels_ = 0;
  std::uint32_t linesToScan_ = 0;  // lines that the scanner will send
  std::uint32_t curLine_ = 0;      // lines delivered
  std::uint32_t blocksRead_ = 0;
  ProgressCallback progressCallback_ = nullptr;

  // The line under the cursor.
  ScanLine line_;
  std::uint32_t lineOffset_ = 0;     // where it starts in dataBuffer_
  std::uint32_t receivedBytes_ = 0;  // data bytes of the block last received
};

}  // namespace pmddb832
