#pragma once

#include <doctest/doctest.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/interface/module_fixture.h"

// The language of the conversation tests of both families.

namespace pmddb832::tests {

inline constexpr std::uint8_t kNak = 0x15;
inline constexpr std::uint32_t kGoOn = 1;
inline constexpr std::uint32_t kFailed = 2;
// What a member of a host record holds that the module did not write.
inline constexpr std::uint32_t kUnwritten = 0xA5A5A5A5;
inline constexpr std::string_view kUnwrittenBand =
    "02 00 00 00 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5";

// first, first + 1, ...
Bytes Ramp(std::uint8_t first, std::size_t count);
// The two and the four bytes of a little-endian integer.
Bytes Short(std::uint32_t value);
Bytes Word(std::uint32_t value);
// `block` with other bytes from `offset` on, and at several places: "16: 20 00, 28: 04".
Bytes With(Bytes block, std::size_t offset, const Bytes& bytes);
Bytes With(Bytes block, std::string_view changes);

// What the host has after a call of PMAcquireImage. Record and image were filled with A5 before it.
struct Band {
  AcquisitionBand record;
  std::string recordBytes;  // "01 00 00 00 A5 ..."
  Bytes image;

  // The image as hex text; or, where each row consists of one value only, these values.
  std::string Hex() const { return tests::Hex(image); }
  std::string Rows(std::size_t rowBytes) const;
};

// The bytes of a settings record, and those of one that the host filled with A5 but for the members
// that an open reads, and what an open of `model`'s scanner, with its conversation scripted, makes
// of that one. Its size is exact: no byte behind it may be touched.
Bytes BytesOf(const ScannerSettings& settings);
Bytes FilledRecord(const ScannerSettings& model);
Bytes FilledRecordAfterOpen(const ScannerSettings& model);

// What only the command set itself tells: the results of its open and its abort, and the main
// status.
std::uint32_t OpenSet();
std::uint32_t AbortSet();
std::uint32_t SetStatus(std::uint8_t* mainStatus, std::uint32_t option);

// A host and a scripted scanner of either family. The settings ask for a grey scan of 16 x 4 pixels
// at 100 dpi in the corner of the flatbed. A test scripts what the scanner expects and answers, and
// calls the host's functions.
class ScriptedScanner : public ModuleFixture {
 public:
  ScriptedScanner();

  // The scanner's side.
  void AnswerReset();
  void ExpectEject();

  // The host's side.
  // The record that PMInitAcquire filled, as hex text.
  std::string InitAcquire(std::uint32_t outputFormat = 2,
                          ProgressCallback callback = &NoteProgress);
  Band Acquire(std::size_t bufferBytes, std::uint32_t request = kUnwritten);
  // An acquisition that must fail with this code.
  void CheckAcquireFails(std::size_t bufferBytes, std::uint32_t code);
  // An acquisition that must write nothing, but be told as failed with code 9.
  void CheckNothingAcquired();

  AcquisitionSetup setup{};  // what the last PMInitAcquire filled

  // Calls of the progress routine since the fixture was made, and what the next one at or above
  // that percentage also does.
  inline static std::vector<std::uint32_t> progress;
  inline static std::function<void()> duringProgress;
  inline static std::uint32_t atPercent = 0;
  static void NoteProgress(std::uint32_t percent);
};

}  // namespace pmddb832::tests
