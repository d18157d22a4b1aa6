#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "imaging/pixel_format.h"
#include "imaging/scan_line.h"
#include "platform/process_heap.h"
#include "transport/general_cmd.h"
#include "wire/area_size.h"
#include "wire/block_header.h"
#include "wire/document_source.h"
#include "wire/identity_reply.h"
#include "wire/status_reply.h"

namespace pmddb832 {

inline constexpr std::uint32_t kDataStart = 10;  // of a block in the receive buffer

// The command set of scanners that answer the standard commands (ESC and a letter) only.
// Operations return 1 for success and 0 for failure unless stated; the reason of a failure is kept
// for GetLastError.
class StdScanCmd final : public GeneralCmd {
 public:
  // `option` is the creator's probe option.
  explicit StdScanCmd(std::uint8_t option);
  ~StdScanCmd();

  std::uint32_t EnableOption(std::uint32_t value) override;
  void Close() override;
  std::uint32_t Open() override;
  std::uint32_t GetLastError() override;
  std::uint32_t AbortScan() override;
  void InitAcquire(std::uint32_t outputFormat, ProgressCallback progress,
                   AcquisitionSetup* setup) override;
  void AcquireImage(std::uint8_t* buffer, std::uint32_t bufferBytes,
                    AcquisitionBand* band) override;
  std::uint32_t GetOptionStatus(std::uint8_t* mainStatus, std::uint32_t option) override;
  std::uint8_t SetFocusPos(std::uint32_t mode, std::uint8_t position) override;
  std::uint32_t GetScanPaperSize(std::uint32_t option, std::uint32_t* width,
                                 std::uint32_t* height) override;

 private:
  // identification.cpp
  std::uint32_t GetScanInfo();
  std::optional<std::span<const std::uint8_t>> Inquire(std::uint8_t letter);
  std::uint32_t StoreResolutions(const Identity& identity);
  std::uint32_t MakeIndexTable();
  std::uint32_t StoreCommandLevel(const Identity& identity);

  // product_name.cpp
  void IdentifyModel();
  std::uint32_t GetScannerProductName();

  // areas.cpp
  std::uint32_t FindOptionUnit();
  void StoreFeederFlags();
  std::uint32_t GetDocFeedOptions();
  void StoreAreas();
  AreaSize GetMaxScan(std::size_t area);
  AreaSize FeederArea() const;
  AreaSize TransparencyArea() const;
  AreaSize PaperSize(std::uint32_t option);
  const AreaSize& SelectedArea() const;
  std::uint16_t LastResolution() const;

  // parameter_commands.cpp
  std::uint32_t SendParam2(std::uint8_t letter, std::uint8_t parameter);
  std::uint32_t SendParam3(std::uint8_t letter, std::uint8_t first, std::uint8_t second);
  std::uint32_t SendParam4(std::uint8_t letter, std::uint8_t prefix,
                           std::span<const std::uint8_t> data);
  std::uint32_t SendParamW3(std::uint8_t letter, std::uint16_t first, std::uint16_t second);
  std::uint32_t SendParamW5(std::uint8_t letter, const std::array<std::uint16_t, 4>& values);

  // settings_upload.cpp
  void UpdateSettings();
  std::uint32_t CheckStatus();
  void SendColours();
  void SendHalftone();
  void SendThreshold();
  void SendGamma();
  void SendGammaTables();
  void SendColourCorrection();
  void SendMirrorAndFilters();
  void SendResolutionAndZoom();
  void SendArea();
  std::uint32_t WidthLimit();
  std::uint32_t MaximumWidth(std::uint16_t resolution);
  bool IsCentred() const;

  // scan_setup.cpp
  void TakeScanArea();
  void SetPixelType();

  // status.cpp
  std::uint32_t GetStatusNoE(StatusReply& destination);
  std::uint32_t CheckWarmup();

  // focus.cpp
  std::uint8_t ExeSetFocusPos(std::uint32_t mode, std::uint8_t positionByte);
  std::uint8_t FocusAutomatically();

  // scan_start.cpp
  std::uint32_t PrepareReceiveBuffer(bool fresh, std::uint32_t bufferBytes);
  std::uint32_t AllocateReceiveBuffer();
  std::uint32_t InitiateScan();
  std::uint32_t CheckOptionUnit();
  std::uint32_t CheckTransparencyUnit();
  std::uint32_t CheckFeeder();
  std::uint32_t SetBlockMode();
  std::uint32_t StartScanner();
  std::uint32_t RequestScan();
  static void WaitForModel();

  // blocks.cpp
  std::uint32_t NextScanStep();
  std::uint32_t ReceiveBlock();
  std::uint32_t ReadBlockHeader(BlockHeader& header);
  std::uint32_t ReadLines(std::uint32_t bytes);
  std::uint32_t AnswerBlock(std::uint8_t status, std::uint32_t lines);
  std::uint32_t GetScanLine();
  void PointAtLine(std::uint32_t end);

  // acquisition.cpp
  std::uint32_t DeliverBand(std::span<std::uint8_t> rows, std::uint32_t rowBytes);
  void ReportProgress(std::uint32_t linesDelivered) const;
  void ConvertScanLine(HostRow row) const;
  std::uint32_t FinishPage();

  bool IsFeederSelected() const;
  std::uint32_t Fail(std::uint32_t code);

  std::uint32_t isOpen_ = 0;
  std::uint32_t lastError_ = 0;

  // The scanner, from its identification.
  std::unique_ptr<std::uint16_t[]> indexTable_;  // 1 to 8
  // Dots per inch, as the scanner reported them; the last one, which areas refer to, is never 0.
  std::unique_ptr<std::uint16_t[]> resolutionList_;
  std::size_t resolutionCount_ = 0;
  // Pixels at the last resolution: flatbed, option unit, document feeder.
  std::array<AreaSize, 3> areas_{};
  std::uint32_t optionAvailable_ = 0;
  std::uint32_t optionKind_ = kFlatbed;  // the option unit that is fitted; kFlatbed for none
  std::uint32_t commandLevel_ = 0;       // 0 is not supported
  std::uint32_t levelIsA_ = 0;
  std::uint16_t modelQuirk_ = 0;    // not 0: the highest resolution is doubled by the module
  std::uint8_t highBitDepth_ = 12;  // bits per sample sent for the deep pixel types

  // The scan that was set up: pixels and lines at the scan resolution.
  std::uint32_t areaLeft_ = 0;
  std::uint32_t areaTop_ = 0;
  std::uint32_t areaWidth_ = 200;
  std::uint32_t areaHeight_ = 300;
  std::uint32_t pixelType_ = 0;
  PixelFormat format_{1, 0, 1, 1};
  std::uint32_t acquireMode_ = 0;  // the host's output format
  std::uint32_t lineBytes_ = 0;    // of one host line; 0 while no scan is set up
  std::uint32_t linesTotal_ = 0;
  std::uint32_t linesDone_ = 0;
  std::uint32_t acquireArmed_ = 0;  // the next first band starts the scanner
  std::uint32_t fillWhite_ = 0;     // lines are delivered white: the scan was aborted
  ProgressCallback progressCallback_ = nullptr;

  // What was sent of it.
  std::uint32_t sentWidth_ = 0;  // pixels
  std::uint16_t padPixels_ = 0;  // requested pixels that are not sent, or sent ones not requested
  std::uint32_t paramState_ = 1;
  std::uint8_t statusByte_ = 0;
  std::uint8_t gammaCode_ = 1;
  std::uint32_t colorModeSubstituted_ = 0;

  // The transfer.
  platform::HeapBlock receiveBuffer_;  // lines start kDataStart bytes into it
  std::uint32_t receiveSize_ = 0;      // what the lines per block are computed from
  std::uint32_t blockCapacity_ = 0;    // largest block that it holds
  std::uint32_t scanActive_ = 0;       // the scanner was started and has not sent its last block
  std::uint32_t blockMode_ = 0;        // blocks have several lines
  std::uint32_t aborting_ = 0;         // the next block is answered with CAN
  std::uint32_t ackPending_ = 0;       // a block may still be answered: there was no CAN yet
  std::uint32_t headerPending_ = 0;    // the first block's header came with the start
  BlockHeader startHeader_{};
  std::uint32_t linesReceived_ = 0;

  // The block last received and the line under the cursor.
  std::uint32_t receivedBytes_ = 0;
  std::uint16_t blockLines_ = 0;
  std::uint16_t blockLineIndex_ = 0;  // lines handed out
  std::uint32_t lineLength_ = 0;      // bytes
  std::uint32_t lineOffset_ = 0;      // where it starts in the block
  ScanLine line_;
};

}  // namespace pmddb832
