#pragma once

#include <array>

#include "tests/models/command_set.h"

namespace pmddb832::models {

// What the module does with a scanner that answers FS commands.
class ExtendedSet final : public CommandSet {
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

  std::uint8_t Focus(bool automatic, std::uint8_t position) override;
  bool SendFs(char letter);
  bool ReadIdentity(bool& isUsable);
  bool ReadStatus();
  bool CheckWarmup();

  // Identification.
  bool Identify();
  void StoreResolutions();
  bool StoreLevel();
  bool StoreOptions();
  void StoreModelName();
  void StoreAreas();
  Size SizeAt(std::size_t offset) const;

  // The parameter block.
  void TakePixelType();
  bool SetUpScan();
  bool SendTables();
  void FillFormat();
  bool FillArea();
  void PlaceBytes(std::uint32_t limit);
  void PlaceGroups(std::uint32_t limit);
  bool FillLinesPerBlock();
  bool SendParameterBlock();

  // The image.
  bool StartTransfer();
  bool Start();
  bool StartOnce(bool& refused);
  bool AdvanceLine();
  bool ReadBlock();
  bool AnswerBlock(std::uint8_t status, bool isLast);
  bool DeliverLine(std::span<std::uint8_t> row);
  bool FinishPage();

  bool opened_ = false;
  std::array<std::uint8_t, 80> identity_{};
  std::array<std::uint8_t, 16> status_{};
  std::array<std::uint8_t, 64> parameters_{};
  std::array<std::uint8_t, 14> header_{};
  Size flatbed_, option_;

  // What is asked for.
  bool tellsProgress_ = false;
  std::uint32_t format_ = 0;  // the host's, at the set-up
  bool swaps_ = false;        // whether that format wants the channels in the other order
  std::uint32_t pixelType_ = 0;
  std::uint8_t scanBits_ = 0, colorMode_ = 0, highBitDepth_ = 12;
  std::uint32_t pixelsPerUnit_ = 1, bytesPerUnit_ = 1;
  std::uint32_t hostLineBytes_ = 0, rawLineBytes_ = 0;
  std::uint32_t width_ = 0, height_ = 0;              // the host's
  std::uint32_t sentWidth_ = 0, left_ = 0, top_ = 0;  // the scanner's
  std::uint32_t linesToScan_ = 0;
  std::int16_t pad_ = 0;

  // Where the scan is.
  bool transferActive_ = false, abortRequested_ = false, endOfData_ = false;
  std::uint32_t line_ = 0, blocksRead_ = 0;
  Bytes data_ = Bytes(65280);
  std::size_t received_ = 0, cursor_ = 0;
};

}  // namespace pmddb832::models
