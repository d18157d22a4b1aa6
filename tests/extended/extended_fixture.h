#pragma once

#include <doctest/doctest.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/interface/module_fixture.h"

namespace pmddb832::tests::extended {

inline constexpr std::uint8_t kNak = 0x15;
inline constexpr std::uint32_t kGoOn = 1;
inline constexpr std::uint32_t kFailed = 2;
// What a member of a host record holds that the module did not write.
inline constexpr std::uint32_t kUnwritten = 0xA5A5A5A5;

// The bytes of "1C 49"; white space is free.
Bytes FromHex(std::string_view hex);
// first, first + 1, ...
Bytes Ramp(std::uint8_t first, std::size_t count);
// The four bytes of a little-endian integer.
Bytes Word(std::uint32_t value);
// `block` with other bytes from `offset` on.
Bytes With(Bytes block, std::size_t offset, const Bytes& bytes);

// Reply to FS "I", 80 bytes: level B8, 100 dpi (basic), 50 to 1600 dpi, "SCANNER QM-8700 ", areas
// in pixels: flatbed 1000 x 1400, feeder 800 x 1300, transparency unit 400 x 500.
Bytes Identity();
// Reply to FS "F", 16 bytes.
Bytes Status(std::uint8_t main = 0, std::uint8_t feeder = 0, std::uint8_t transparencyUnit = 0);
// The 64 bytes behind FS "W" for the settings that the fixture makes.
Bytes ParameterBlock();
// Reply to FS "G", 14 bytes.
Bytes Header(std::uint32_t blockBytes, std::uint32_t fullBlocks, std::uint32_t lastBlockBytes);

// What the host has after a call of PMAcquireImage. Record and image were filled with A5 before it.
struct Band {
  AcquisitionBand record;
  std::string recordBytes;  // "01 00 00 00 A5 ..."
  Bytes image;

  // The image as hex text; or, where each row consists of one value only, these values.
  std::string Hex() const { return tests::Hex(image); }
  std::string Rows(std::size_t rowBytes) const;
};

// A host and an extended scanner. The settings ask for a grey scan of 16 x 4 pixels at 100 dpi in
// the corner of the flatbed. A test scripts what the scanner expects and answers, and calls the
// host's functions. At its end the conversation must have been the scripted one.
class ExtendedScanner : public ModuleFixture {
 public:
  ExtendedScanner();
  ~ExtendedScanner();

  // The scanner's side: scripts one exchange each.
  void AnswerProbe();
  void AnswerReset();
  void AnswerIdentity(Bytes identity = Identity());
  void AnswerStatus(Bytes status = Status());
  void AcceptParameters(Bytes block = ParameterBlock());
  void AnswerStart(Bytes header);  // ready, and the header of the transfer
  void SendBlock(Bytes data);      // with a good status byte; the driver answers ACK
  void SendLastBlock(Bytes data);
  void ExpectEject();

  // The host's side.
  std::uint32_t Open(Bytes identity = Identity(), Bytes status = Status());
  // Opens a scanner with a feeder, which is then selected.
  void OpenFeeder(std::uint8_t feederFlags = 0);
  // The record that PMInitAcquire filled, as hex text.
  std::string InitAcquire(std::uint32_t hostPixelType = 2,
                          ProgressCallback callback = &NoteProgress);
  Band Acquire(std::size_t bufferBytes);

  // Both sides: PMInitAcquire, and all that starts the transfer.
  void StartScan(Bytes parameters, Bytes header, std::uint32_t hostPixelType = 2);
  // The whole default scan, one block of 64 bytes.
  Band ScanPage(std::uint32_t hostPixelType = 2);
  // Asks for 16000 pixels at 1600 dpi, of which a block holds four lines, and returns its
  // parameters.
  Bytes AskForWideLines(std::uint8_t lines);

  AcquisitionSetup setup{};  // what the last PMInitAcquire filled

  // Calls of the progress routine since the fixture was made, and what its next call also does.
  inline static std::vector<std::uint32_t> progress;
  inline static std::function<void()> duringProgress;
  static void NoteProgress(std::uint32_t percent);
};

// Bytes of one line of AskForWideLines, all of that value.
Bytes WideLine(std::uint8_t value);

}  // namespace pmddb832::tests::extended
