#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "simulator/device/page_scanner.h"
#include "simulator/device/scan_request.h"
#include "simulator/page/pixel_size.h"
#include "simulator/standard/standard_transfer.h"

namespace simulator {

// What the scanner says of itself. Resolutions in dots per inch, areas in pixels at the last
// resolution of the list; numbers go out with 16 bits.
struct StandardIdentity {
  // Level letter and digit: A5, or B1 to B9. From digit 4 on the scanner knows status, blocks of
  // several lines and gamma tables, from B8 on focus.
  std::string level = "B8";
  std::string productName = "SCANNER QM-43000";  // at most 16 characters count
  std::vector<std::uint32_t> resolutions{50, 72, 75, 100, 150, 200, 300, 400, 600, 800};
  // The scanner scans at up to twice the last resolution: its driver doubles what it is told.
  bool listsHalf = false;
  PixelSize flatbed{6800, 9360};           // 8.5 x 11.7 inches
  PixelSize feeder{6800, 11200};           // 8.5 x 14 inches
  PixelSize transparencyUnit{3200, 4000};  // 4 x 5 inches
  // In the main status of a scanner with a feeder. 0x20: the feeder takes option values above 1;
  // 0x10: its second capability.
  std::uint8_t feederFlags = 0;
};

struct StandardScannerConfig : Equipment {
  StandardIdentity identity;
  Manners manners;
};

// A scanner of the family that answers the ESC commands only.
class StandardScanner final : public PageScanner {
 public:
  explicit StandardScanner(StandardScannerConfig config);

  // The scan that ESC G starts: what the parameter commands set. Nothing while something is
  // missing: after a reset, or after the scanner refused one of ESC C, D, R, H and A.
  std::optional<ScanRequest> Request() const;

  // Parameters of the last command with that letter; nothing after a reset or a refusal. Those of
  // ESC g and s are kept and not applied.
  std::optional<std::vector<std::uint8_t>> Parameters(char letter) const;

 protected:
  std::optional<std::uint32_t> ParameterBytes(std::uint8_t prefix,
                                              std::uint8_t letter) const override;
  void Execute(std::uint8_t prefix, std::uint8_t letter, Bytes parameters) override;
  void EjectPage() override;

 private:
  using Handler = void (StandardScanner::*)(Bytes parameters);
  using Check = std::string (StandardScanner::*)(Bytes parameters) const;
  struct Row;
  static const Row* FindCommand(std::uint8_t prefix, std::uint8_t letter);

  void Reset(Bytes);
  void TellLevel(Bytes);
  void TellProduct(Bytes);
  void TellCondition(Bytes);
  void TellStatus(Bytes);
  void TakeTable(Bytes selectorAndTable);
  void ChooseSource(Bytes value);
  void StartTransfer(Bytes);

  // Why parameters are impossible; empty when they are possible.
  std::string WhyNoColorMode(Bytes code) const;
  std::string WhyNoDepth(Bytes bits) const;
  std::string WhyNoHalftone(Bytes code) const;
  std::string WhyNoGamma(Bytes code) const;
  std::string WhyNoCorrection(Bytes on) const;
  std::string WhyNoResolution(Bytes mainAndSub) const;
  std::string WhyNoZoom(Bytes mainAndSub) const;
  std::string WhyNoArea(Bytes area) const;
  std::string WhyNoBlock(Bytes lines) const;
  template <int kLowest, int kHighest>
  std::string WhyOutOfRange(Bytes value) const;

  void TakeParameters(const Row& row, Bytes parameters);
  void Apply(char letter);
  // The parameter of the last command with that letter, if it was accepted.
  std::uint8_t ByteOf(char letter, std::uint8_t otherwise) const;
  std::uint32_t ResolutionTimesZoom() const;
  std::uint32_t WidestLine() const;
  PixelSize AreaOfSource() const;
  std::string WhyRequestImpossible() const;
  void RefuseStart(bool repeated);
  void BeginTransfer(bool repeated);
  void SpoilStart(std::vector<std::uint8_t> header, bool linesAtOnce);

  bool IsLevelA() const { return identity_.level.at(0) == 'A'; }
  char LevelDigit() const { return identity_.level.at(1); }
  bool KnowsStatus() const { return LevelDigit() >= '4'; }

  const StandardIdentity identity_;
  std::map<char, std::vector<std::uint8_t>> accepted_;  // parameters by their letter
  GammaTables gamma_;                                   // of the last ESC Z
  bool startRefused_ = false;                           // the last start, without an area since
};

}  // namespace simulator
