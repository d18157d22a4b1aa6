#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace pmddb832 {

// What GetLastError, and through it PMGetScanError, answers.
enum ErrorCode : std::uint32_t {
  kNoError = 0,
  kIdentificationFailed = 1,
  kEmptyLine = 1,
  kUnreadable = 7,  // no device, or status or identity unreadable
  kNoTransport = 8,
  kTransferFailed = 9,
  kUnsupportedLevel = 10,
  kOptionEmpty = 13,
  kOptionOpen = 14,
  kOptionJammed = 15,
  kTooLarge = 16,  // area, line or buffer
  kScannerError = 22,
  kNotReady = 31,
  kOriginBeyondLimits = 34,
  kAreaBeyondLimits = 35,
  kWarmingUp = 43,
};

// A code in words.
struct ErrorWords {
  ErrorCode code;
  std::string_view name;   // for a line of a conversation
  std::string_view words;  // for a person whose call failed with it
};

// clang-format off
inline constexpr std::array kErrorWords{
    ErrorWords{kNoError, "no error",
               "the scanner failed and gave no reason"},
    ErrorWords{kIdentificationFailed, "identification failed, or empty line",
               "the scanner could not be identified, or the line to scan is empty"},
    ErrorWords{kUnreadable, "no device, or status or identity unreadable",
               "there is no device, or its status or identity cannot be read"},
    ErrorWords{kNoTransport, "no connection",
               "the module could not set up its connection"},
    ErrorWords{kTransferFailed, "transfer failed",
               "the data transfer failed"},
    ErrorWords{kUnsupportedLevel, "unsupported command level",
               "the scanner's command level is not supported"},
    ErrorWords{kOptionEmpty, "feeder empty",
               "the document feeder is empty"},
    ErrorWords{kOptionOpen, "feeder not ready, cover open",
               "the document feeder is not ready: its cover is open"},
    ErrorWords{kOptionJammed, "paper jam, or fault of the transparency unit",
               "paper is jammed in the document feeder, or the transparency unit has a fault"},
    ErrorWords{kTooLarge, "area, line or buffer too large",
               "the area, line or buffer is too large"},
    ErrorWords{kScannerError, "scanner error",
               "the scanner reports an error"},
    ErrorWords{kNotReady, "scanner not ready",
               "the scanner is not ready"},
    ErrorWords{kOriginBeyondLimits, "area begins beyond the limits",
               "the area begins beyond what the scanner can address"},
    ErrorWords{kAreaBeyondLimits, "area beyond the limits",
               "the area is wider or higher than the scanner can deliver"},
    ErrorWords{kWarmingUp, "warming up",
               "the scanner is warming up"},
};
// clang-format on

// The row of a code; that of kNoError for a number that has none.
constexpr const ErrorWords& WordsOf(std::uint32_t code) {
  const auto* const row =
      std::find_if(kErrorWords.begin(), kErrorWords.end(),
                   [code](const ErrorWords& words) { return words.code == code; });
  return row == kErrorWords.end() ? kErrorWords.front() : *row;
}

}  // namespace pmddb832
