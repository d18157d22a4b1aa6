#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simulator/device/page_scanner.h"
#include "simulator/device/scan_request.h"
#include "simulator/page/pixel_size.h"

namespace simulator {

// What the scanner says of itself. Resolutions in dots per inch; areas in pixels at the basic
// resolution. The driver doubles the lowest resolution and halves the highest before it tells the
// host of them.
struct ExtendedIdentity {
  std::string level = "B8";                      // two characters; focus exists from B8 on
  std::string productName = "SCANNER QM-2700 ";  // at most 16 characters count
  std::uint32_t basicResolution = 600;
  std::uint32_t minResolution = 25;
  std::uint32_t maxResolution = 2400;
  PixelSize flatbed{5100, 7020};           // 8.5 x 11.7 inches
  PixelSize feeder{5100, 8400};            // 8.5 x 14 inches
  PixelSize transparencyUnit{2400, 3000};  // 4 x 5 inches
  // 0x20: the feeder takes option values above 1; 0x10 and 0x08: its second and third capability.
  std::uint8_t feederFlags = 0;
};

struct ExtendedManners : Manners {
  bool knowsExtendedCommands = true;  // bit 0x02 of the probe reply's status byte
  // A page of whole blocks ends with a last block of 0 bytes. A driver that reads no further than
  // its last line leaves that block's status byte unread.
  bool emptyLastBlock = false;
};

struct ExtendedScannerConfig : Equipment {
  ExtendedIdentity identity;
  ExtendedManners manners;
};

// A scanner of the family that answers the FS commands.
class ExtendedScanner final : public PageScanner {
 public:
  explicit ExtendedScanner(ExtendedScannerConfig config);

  // The last parameter block that was accepted, as a scan. Nothing after a reset.
  const std::optional<ScanRequest>& Request() const { return request_; }

 protected:
  std::optional<std::uint32_t> ParameterBytes(std::uint8_t prefix,
                                              std::uint8_t letter) const override;
  void Execute(std::uint8_t prefix, std::uint8_t letter, Bytes parameters) override;

 private:
  using Handler = void (ExtendedScanner::*)(Bytes parameters);
  struct Row;
  static const Row* FindCommand(std::uint8_t prefix, std::uint8_t letter);

  void Reset(Bytes);
  void TellLevel(Bytes);
  void TellIdentity(Bytes);
  void TellStatus(Bytes);
  void TakeParameters(Bytes block);
  void StartTransfer(Bytes);

  std::string WhyImpossible(Bytes block) const;
  std::string WhyAreaImpossible(Bytes block) const;
  std::string WhyTonesImpossible(Bytes block) const;
  PixelSize Area(std::uint8_t option) const;
  void JudgeReserved(Bytes block);
  void BeginTransfer();

  const ExtendedIdentity identity_;
  const ExtendedManners manners_;
  std::optional<ScanRequest> request_;
  std::uint32_t linesPerBlock_ = 0;
};

}  // namespace simulator
