#pragma once

#include <doctest/doctest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/interface/module_fixture.h"

namespace pmddb832::tests::standard {

inline constexpr std::uint8_t kNak = 0x15;
inline constexpr std::uint32_t kGoOn = 1;
inline constexpr std::uint32_t kFailed = 2;
// What a member of a host record holds that the module did not write.
inline constexpr std::uint32_t kUnwritten = 0xA5A5A5A5;

// The bytes of "1C 49"; white space is free.
Bytes FromHex(std::string_view hex);
// first, first + 1, ...
Bytes Ramp(std::uint8_t first, std::size_t count);
// The two bytes of a little-endian integer.
Bytes Short(std::uint32_t value);
// `block` with other bytes from `offset` on.
Bytes With(Bytes block, std::size_t offset, const Bytes& bytes);
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

// The upload of the fixture's settings at a level, as "letter parameters, letter parameters ...".
std::string UploadOf(std::string_view level);

// What the host has after a call of PMAcquireImage. Record and image were filled with A5 before it.
struct Band {
  AcquisitionBand record;
  std::string recordBytes;  // "01 00 00 00 A5 ..."
  Bytes image;

  std::string Hex() const { return tests::Hex(image); }
};

// A host and a standard scanner. The settings ask for a grey scan of 16 x 4 pixels at 100 dpi in
// the corner of the flatbed. A test scripts what the scanner expects and answers, and calls the
// host's functions. At its end the conversation must have been the scripted one.
class StandardScanner : public ModuleFixture {
 public:
  // Not opened yet.
  StandardScanner();
  // Opened.
  explicit StandardScanner(std::string_view openLevel, const Bytes& status = standard::Status());
  ~StandardScanner();

  // The scanner's side: scripts one exchange each.
  void AnswerProbe();
  void AnswerReset();
  void Answer(char letter, const standard::Reply& reply);
  void AnswerStatus(const Bytes& status = standard::Status());
  void AcceptUpload(std::string_view commands);  // ESC "F" and the commands
  // Ready, ESC "G" and its answer.
  void AnswerStart(const Bytes& header);
  // Lines of a block, alone and behind its header; the driver answers ACK unless it is the last.
  void SendLines(const Bytes& lines);
  void SendBlock(const Bytes& header, const Bytes& lines);
  void SendLastBlock(const Bytes& header, const Bytes& lines);
  void ExpectEject();

  // The host's side.
  std::uint32_t Open(const Bytes& identity = Identity(), const Bytes& status = standard::Status(),
                     const Bytes& product = Product());
  // The record that PMInitAcquire filled, as hex text.
  std::string InitAcquire(std::uint32_t outputFormat = 2,
                          ProgressCallback callback = &NoteProgress);
  Band Acquire(std::size_t bufferBytes, std::uint32_t request = kUnwritten);

  // Both sides. The upload of an acquisition that then fails at the next command.
  void Upload(std::string_view commands);
  // An upload that ends the acquisition itself; returns the code.
  std::uint32_t FailingUpload(std::string_view commands);
  // All that starts the scan of the fixture's settings up to and including ESC "G", whose answer is
  // `header`. The scan takes `linesPerBlock`; 0 stands for line mode.
  void StartScan(const Bytes& header, std::uint8_t linesPerBlock = 4,
                 std::uint32_t outputFormat = 1);
  // The whole default scan: one block of 64 bytes.
  Band ScanPage(std::uint32_t outputFormat = 1);

  // Calls of the progress routine since the fixture was made, and what else it does in each.
  inline static std::vector<std::uint32_t> progress;
  inline static std::function<void()> duringProgress;
  static void NoteProgress(std::uint32_t percent);

  // Of the scanner that was opened.
  std::string level = "B4";
  bool optionFitted = false;
};

// Header of a block of `lines` lines.
Bytes BlockHeader(std::uint8_t status, std::uint16_t lineBytes, std::uint16_t lines);

}  // namespace pmddb832::tests::standard
