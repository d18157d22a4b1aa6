#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "wire/error_codes.h"

namespace pmscan {

using pmddb832::kOptionEmpty;
using pmddb832::kOptionOpen;
using pmddb832::kScannerError;
using pmddb832::kTooLarge;
using pmddb832::kTransferFailed;
using pmddb832::kWarmingUp;

// The numbers that are pmscan's own.
enum FailureCode : std::uint32_t {
  kUnknownError = 63,  // stands for any that the table does not list
  kUsage = 64,
  kUnsupported = 65,
  kInputFile = 66,
  kCaptureUnreadable = 67,
  kDeviceUnavailable = 68,
  kModuleMissing = 69,
  kSimulation = 70,
  kNumberFile = 71,
  kTraceUnreadable = 72,
  kOutputFile = 73,
  kFileUnwritable = 74,
  kTextLost = 75,
  kProtocolViolation = 76,
  kReplayDiffers = 77,
  kProfile = 78,
  kFaultMissed = 79,
  kInterrupted = 130,
};

struct ErrorCode {
  std::uint32_t code;
  std::string_view whatToDo;
  std::string_view meaning = pmddb832::WordsOf(code).words;

  // Of the program; never 0.
  constexpr int ExitCode() const { return code == 0 ? 62 : static_cast<int>(code); }
};

// Every way in which pmscan ends without success: those of the module, whose meaning is the
// module's, and pmscan's own. docs/error-codes.md is the same table.
// clang-format off
inline constexpr std::array kErrorCodes{
    ErrorCode{1, "Check that the device is a supported scanner and that the area has a width."},
    ErrorCode{7, "Check the cable and the power, switch the scanner off and on, then try again."},
    ErrorCode{8, "Close other programs to free memory, then try again."},
    ErrorCode{9, "Check the cable, switch the scanner off and on, then scan again."},
    ErrorCode{10,
              "Use a scanner of a supported level: A5 or B3 to B9, with extended commands B3 to B8."},
    ErrorCode{13, "Load paper into the feeder, then scan again."},
    ErrorCode{14, "Close the feeder's cover, then scan again."},
    ErrorCode{15,
              "Remove the jammed paper, or seat the transparency unit properly, then scan again."},
    ErrorCode{16, "Choose a smaller area, a lower resolution or a mode with fewer bits per pixel."},
    ErrorCode{22, "Check the scanner's cover, transport lock and lamp; switch it off and on."},
    ErrorCode{31, "Wait until the scanner has finished what it is doing, then try again."},
    ErrorCode{34, "Move the area towards the top left corner, or choose a lower resolution."},
    ErrorCode{35, "Choose a smaller area or a lower resolution: a line has at most 32752 pixels."},
    ErrorCode{43, "Wait a minute, then scan again, or give it longer with --warm-up SECONDS."},
    ErrorCode{0, "Check that the scanner is switched on and connected, then try again."},
    ErrorCode{kUnknownError, "Switch the scanner off and on, then try again.",
              "the module reports an unknown error"},
    ErrorCode{kUsage, "Read pmscan --help, or pmscan SUBCOMMAND --help.",
              "the command line is not understood"},
    ErrorCode{kUnsupported,
              "Change one of the options named above; pmscan info tells what the scanner has.",
              "this combination is not possible"},
    ErrorCode{kInputFile, "Name a PNG, TIFF, BMP or JPEG file that can be opened.",
              "the picture for the bed cannot be read"},
    ErrorCode{kCaptureUnreadable,
              "Name a file that --capture wrote; docs/capture-format.md tells how to edit one.",
              "the capture cannot be read"},
    ErrorCode{kDeviceUnavailable,
              "See with pmscan devices what the system knows; close other programs that scan.",
              "the still-image device cannot be opened"},
    ErrorCode{kModuleMissing,
              "Put Pmddb832.dll (on Linux Pmddb832.so) beside pmscan, or name it with --dll PATH.",
              "the scanner module cannot be loaded"},
    ErrorCode{kSimulation, "Correct the file; docs/simulator-profiles.md describes every key.",
              "the file or fault script of the simulated scanner cannot be used"},
    ErrorCode{kNumberFile, "Correct the file; docs/pmscan.md describes what it holds.",
              "the gamma table or colour matrix cannot be used"},
    ErrorCode{kTraceUnreadable,
              "Name a pcap or pcapng file of usbmon or USBPcap that holds what the scanner was sent.",
              "the trace cannot be used"},
    ErrorCode{kOutputFile,
              "Check that the folder exists, is writable and has room, or choose another name.",
              "the picture cannot be written"},
    ErrorCode{kFileUnwritable,
              "Check that the folder exists, is writable and has room, or choose another name.",
              "the file cannot be written"},
    ErrorCode{kTextLost,
              "Check that there is room where the text goes, and that it is read to its end.",
              "the text cannot be printed"},
    ErrorCode{kProtocolViolation,
              "Report it with the lines above: this is a fault of the module.",
              "the module sent what the scanner's protocol does not allow"},
    ErrorCode{kReplayDiffers,
              "Compare the module with the one of the capture; --tolerant goes on and counts.",
              "the module does not do what the capture tells"},
    ErrorCode{kProfile,
              "Correct the file, or keep the settings again with --save-profile NAME --overwrite.",
              "the profile cannot be read or written"},
    ErrorCode{kFaultMissed,
              "Correct its place, or let the scanner come there; pmscan decode tells what was said.",
              "a fault of the script did not strike"},
    ErrorCode{kInterrupted, "Scan again when you like; the lines that came, if any, were kept.",
              "the scan was interrupted"},
};
// clang-format on

// The row of a code; that of kUnknownError for a number that has none.
constexpr const ErrorCode& FindErrorCode(std::uint32_t code) {
  const auto* const row = std::find_if(kErrorCodes.begin(), kErrorCodes.end(),
                                       [code](const ErrorCode& each) { return each.code == code; });
  return row == kErrorCodes.end() ? FindErrorCode(kUnknownError) : *row;
}

}  // namespace pmscan
