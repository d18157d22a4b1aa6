#pragma once

#include "tests/interface/scripted_scanner.h"

namespace pmddb832::tests::standard {

// `text` with `part`, which it must contain, replaced.
std::string Replaced(std::string text, std::string_view part, std::string_view by);

// An information reply of these data: STX, status, count.
struct Reply {
  Bytes data;
  std::uint8_t status = 0;
  Bytes Header() const;
};

// Data of the reply to ESC "I": 50 and 100 dpi, flatbed 1000 x 1400 pixels.
Bytes Identity(std::string_view level = "B4");
// With other resolutions.
Bytes IdentityOf(std::string_view level, const std::vector<std::uint16_t>& resolutions);
// Data of the reply to ESC "?".
Bytes Product(std::string_view name = "SCANNER QM-8700 ");
// Data of the reply to ESC "f". Feeder 800 x 1300 pixels, transparency unit 400 x 500.
Bytes Status(std::uint8_t main = 0, std::uint8_t feeder = 0, std::uint8_t transparencyUnit = 0);

// The upload of the fixture's settings at a level, as "letter parameters, letter parameters ...",
// with these commands in place of their namesakes; "-A" leaves the area out.
std::string UploadOf(std::string_view level, std::string_view changes = "");

class StandardScanner : public ScriptedScanner {
 public:
  // Not opened yet.
  StandardScanner() = default;
  // Opened.
  explicit StandardScanner(std::string_view openLevel, const Bytes& status = standard::Status());

  // The scanner's side: scripts one exchange each.
  void AnswerProbe();
  // What an open asks behind the probe; a level of digit 3 is asked for no status.
  void AnswerIdentification(const Bytes& identity, const Bytes& status = standard::Status(),
                            const Bytes& product = Product());
  void Answer(char letter, const standard::Reply& reply);
  void AnswerStatus(const Bytes& status = standard::Status());
  void AcceptUpload(std::string_view commands);  // ESC "F" and the commands
  // Ready, ESC "G" and its answer.
  void AnswerStart(const Bytes& header);
  // Lines of a block, alone and behind its header; the driver answers ACK unless it is the last.
  void SendLines(const Bytes& lines);
  void SendBlock(const Bytes& header, const Bytes& lines);
  void SendLastBlock(const Bytes& header, const Bytes& lines);

  // The host's side.
  std::uint32_t Open(const Bytes& identity = Identity(), const Bytes& status = standard::Status(),
                     const Bytes& product = Product());

  // Both sides. The upload of an acquisition that then fails at the next command.
  void Upload(std::string_view commands);
  // An upload that ends the acquisition itself; returns the code.
  std::uint32_t FailingUpload(std::string_view commands);
  // All that starts the scan of the fixture's settings up to and including ESC "G", whose answer is
  // `header`. The scan takes `linesPerBlock`; 0 stands for line mode.
  void StartScan(const Bytes& header, std::uint8_t linesPerBlock = 4,
                 std::uint32_t outputFormat = 1);
  // The same with an upload of its own.
  void StartScanOf(std::string_view upload, const Bytes& header, std::uint8_t linesPerBlock,
                   std::uint32_t outputFormat);
  // The first line of the scan, of bytes 01, which is a block of its own; more are to come.
  void DeliverFirstLine();
  // A start of a scanner that takes neither an upload nor the lines of a block.
  void StartWithoutUpload(const Bytes& header, std::uint32_t outputFormat = 1);
  // The whole default scan: one block of 64 bytes.
  Band ScanPage(std::uint32_t outputFormat = 1);

  // Of the scanner that was opened.
  std::string level = "B4";
  bool optionFitted = false;
};

struct OpenB3 : StandardScanner {
  OpenB3() : StandardScanner("B3") {}
};
struct OpenB4 : StandardScanner {
  OpenB4() : StandardScanner("B4") {}
};
struct OpenFeederB4 : StandardScanner {
  OpenFeederB4() : StandardScanner("B4", standard::Status(0, 0x80)) {}
};
struct OpenA5 : StandardScanner {
  OpenA5() : StandardScanner("A5") {}
};
struct OpenB8 : StandardScanner {
  OpenB8() : StandardScanner("B8") {}
};

// Header of a block of `lines` lines.
Bytes BlockHeader(std::uint8_t status, std::uint16_t lineBytes, std::uint16_t lines);

}  // namespace pmddb832::tests::standard
