#pragma once

#include <memory>

#include "extended/ext_scan_cmd.h"
#include "tests/interface/scripted_scanner.h"

namespace pmddb832::tests::extended {

// Reply to FS "I", 80 bytes: level B8, 100 dpi (basic), 50 to 1600 dpi, "SCANNER QM-8700 ", areas
// in pixels: flatbed 1000 x 1400, feeder 800 x 1300, transparency unit 400 x 500.
Bytes Identity();
// Reply to FS "F", 16 bytes.
Bytes Status(std::uint8_t main = 0, std::uint8_t feeder = 0, std::uint8_t transparencyUnit = 0);
// The 64 bytes behind FS "W" for the settings that the fixture makes.
Bytes ParameterBlock();
// Reply to FS "G", 14 bytes.
Bytes Header(std::uint32_t blockBytes, std::uint32_t fullBlocks, std::uint32_t lastBlockBytes);

class ExtendedScanner : public ScriptedScanner {
 public:
  // The scanner's side: scripts one exchange each.
  void AnswerProbe();
  void AnswerIdentity(Bytes identity = Identity());
  void AnswerStatus(Bytes status = Status());
  void AcceptParameters(Bytes block = ParameterBlock());
  void AnswerStart(Bytes header);  // ready, and the header of the transfer
  void SendBlock(Bytes data);      // with a good status byte; the driver answers ACK
  void SendLastBlock(Bytes data);

  // The host's side.
  std::uint32_t Open(Bytes identity = Identity(), Bytes status = Status());
  // Opens a scanner with a feeder, which is then selected.
  void OpenFeeder(std::uint8_t feederFlags = 0);

  // Both sides: PMInitAcquire, and all that starts the transfer.
  void StartScan(Bytes parameters, Bytes header, std::uint32_t hostPixelType = 2);
  // The whole default scan, one block of 64 bytes.
  Band ScanPage(std::uint32_t hostPixelType = 2);
  // Asks for 16000 pixels at 1600 dpi, of which a block holds four lines, and returns its
  // parameters.
  Bytes AskForWideLines(std::uint8_t lines);
};

struct OpenExtended : ExtendedScanner {
  OpenExtended() { REQUIRE(Open() == 1); }
};

// An open scanner of which only the parameters of its scans count.
struct ParameterScanner : ExtendedScanner {
  explicit ParameterScanner(const Bytes& identity = Identity(), const Bytes& status = Status()) {
    REQUIRE(Open(identity, status) == 1);
  }

  // A scan whose parameters must be these. It ends there: the scanner is still warming up.
  void CheckParameters(const Bytes& block);
  void CheckParameters(const Bytes& block, std::uint32_t hostPixelType);
  // A scan that is refused before its parameters are sent.
  void CheckRefused();
};

// For each row an open scanner of its own: settings as Set() takes them, and what the parameters
// then have in place of those of the fixture, as With() takes it.
struct ParameterRow {
  std::string settings;
  std::string_view changes;
};
void CheckParameters(const std::vector<ParameterRow>& rows, const Bytes& identity = Identity(),
                     const Bytes& status = Status());

// Owns the command set of the moment, which a further open leaves behind.
struct ReplacedSet {
  std::unique_ptr<ExtScanCmd> set{static_cast<ExtScanCmd*>(currentCommandSet)};
};

// Bytes of one line of AskForWideLines, all of that value.
Bytes WideLine(std::uint8_t value);

}  // namespace pmddb832::tests::extended
