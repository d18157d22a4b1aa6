#pragma once

#include <array>
#include <vector>

#include "tests/models/command_set.h"

namespace pmddb832::models {

// What the module does with a scanner that answers ESC commands only.
class StandardSet final : public CommandSet {
 public:
  using CommandSet::CommandSet;

  bool Open() override;
  void Close() override;
  void InitAcquire(std::uint32_t format, bool tellsProgress, SetupRecord& setup) override;
  void AcquireImage(std::span<std::uint8_t> buffer, BandRecord& band) override;
  void AbortScan() override;
  std::uint32_t GetOptionStatus(std::uint32_t option) override;
  std::uint32_t GetScanPaperSize(std::uint32_t option, std::uint32_t& width,
                                 std::uint32_t& height) override;
  bool EnableOption(std::uint32_t value) override;

 private:
  struct Size {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
  };
  struct Placement {
    std::uint32_t left;
    std::uint32_t width;
    bool clipped = false;
  };

  std::uint8_t Focus(bool automatic, std::uint8_t position) override;

  // Identification.
  bool Identify();
  bool ReadReply(char letter, std::uint16_t& count);
  bool StoreResolutions(std::uint16_t count);
  bool StoreLevel();
  bool StoreOptions();
  void StoreModelName();
  bool NameModel();
  void StoreAreas();
  void StoreArea(const Size& area, Field<std::uint32_t> width, Field<std::uint32_t> height);
  Size SizeAt(std::size_t offset) const;

  // Condition.
  bool ReadStatus();
  bool CheckWarmup();

  // The upload of the settings.
  bool CheckStatus();
  void UploadSettings();
  void UploadFormat();
  void UploadHalftone();
  void UploadGamma();
  void UploadCorrection();
  void UploadArea();
  std::uint32_t WidestLine() const;
  std::uint32_t MaximumWidth(std::uint16_t resolution) const;
  Placement PlaceLine(std::uint32_t limit);
  Placement PlaceFromRight(std::uint32_t limit);
  bool RefusesArea(const Placement& placement);
  void ClipLine(Placement& placement) const;
  bool IsWholePage() const;
  const Size& SelectedArea() const;

  // The set-up and the image.
  void TakeArea();
  void TakePixelType();
  std::uint32_t RoomOfLine() const;
  void PrepareReceiving(std::uint32_t bufferBytes, bool fresh);
  bool InitiateScan();
  bool CheckOption();
  bool ChooseBlocks();
  bool StartTransfer();
  bool NextLine();
  bool ReceiveHeader(std::array<std::uint8_t, 6>& header);
  bool ReceiveBlock();
  bool Acknowledge(std::uint8_t status);
  bool DeliverLine(std::span<std::uint8_t> row);
  bool DeliverLines(std::span<std::uint8_t> buffer, std::uint32_t lines);
  bool FinishPage();
  std::uint32_t CountedPixels() const;

  bool opened_ = false;

  // What the scanner is.
  std::vector<std::uint16_t> resolutions_;
  std::array<Size, 3> areas_;  // the flatbed's, the option's, the feeder's
  std::uint32_t level_ = 0, optionKind_ = 2;
  std::uint16_t quirk_ = 0;

  // What is asked for.
  bool setUp_ = false;
  std::uint32_t format_ = 0, pixelType_ = 0;
  std::uint8_t bits_ = 1, colorMode_ = 0;
  std::uint32_t pixelsPerUnit_ = 1, bytesPerUnit_ = 1;
  std::uint32_t left_ = 0, top_ = 0, width_ = 200, height_ = 300;
  std::uint32_t sentWidth_ = 0;
  std::int16_t pad_ = 0;
  std::uint32_t lineBytes_ = 0, lines_ = 0, linesDone_ = 0;
  bool tellsProgress_ = false;

  // Where the scan is.
  bool armed_ = false, scanActive_ = false, aborting_ = false, ackPending_ = false;
  bool fillsWhite_ = false, blockMode_ = false, headerPending_ = false;
  std::array<std::uint8_t, 6> startHeader_{};
  std::uint16_t blockLines_ = 0, blockLine_ = 0;
  std::uint32_t lineLength_ = 0;
  std::uint32_t receiveSize_ = 65280;
  Bytes data_;
  std::size_t received_ = 0, line_ = 0;
};

}  // namespace pmddb832::models
