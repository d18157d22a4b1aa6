#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace pmscan {

// The numbers that pmscan itself acts upon: those below 63 are the module's, the others its own.
enum FailureCode : std::uint32_t {
  kTransferFailed = 9,
  kFeederEmpty = 13,
  kCoverOpen = 14,
  kTooLarge = 16,
  kWarmingUp = 43,
  kUnknownError = 63,  // stands for any that the table does not list
  kUsage = 64,
  kUnsupported = 65,
  kInputFile = 66,
  kCaptureUnreadable = 67,
  kDeviceUnavailable = 68,
  kModuleMissing = 69,
  kSimulation = 70,
  kOutputFile = 73,
  kCaptureUnwritable = 74,
  kProtocolViolation = 76,
  kReplayDiffers = 77,
  kProfile = 78,
  kInterrupted = 130,
};

struct ErrorCode {
  std::uint32_t code;
  std::string_view meaning;
  std::string_view whatToDo;
  int exitCode;  // of the program; never 0
};

// Every way in which pmscan ends without success. docs/error-codes.md is the same table.
// clang-format off
inline constexpr std::array kErrorCodes{
    ErrorCode{1, "the scanner could not be identified, or the line to scan is empty",
              "Check that the device is a supported scanner and that the area has a width.", 1},
    ErrorCode{7, "there is no device, or its status or identity cannot be read",
              "Check the cable and the power, switch the scanner off and on, then try again.", 7},
    ErrorCode{8, "the module could not set up its connection",
              "Close other programs to free memory, then try again.", 8},
    ErrorCode{9, "the data transfer failed",
              "Check the cable, switch the scanner off and on, then scan again.", 9},
    ErrorCode{10, "the scanner's command level is not supported",
              "Use a scanner of a supported level: A5 or B3 to B9, with extended commands B3 to B8.",
              10},
    ErrorCode{13, "the document feeder is empty",
              "Load paper into the feeder, then scan again.", 13},
    ErrorCode{14, "the document feeder is not ready: its cover is open",
              "Close the feeder's cover, then scan again.", 14},
    ErrorCode{15, "paper is jammed in the document feeder, or the transparency unit has a fault",
              "Remove the jammed paper, or seat the transparency unit properly, then scan again.",
              15},
    ErrorCode{16, "the area, line or buffer is too large",
              "Choose a smaller area, a lower resolution or a mode with fewer bits per pixel.", 16},
    ErrorCode{22, "the scanner reports an error",
              "Check the scanner's cover, transport lock and lamp; switch it off and on.", 22},
    ErrorCode{31, "the scanner is not ready",
              "Wait until the scanner has finished what it is doing, then try again.", 31},
    ErrorCode{34, "the area begins beyond what the scanner can address",
              "Move the area towards the top left corner, or choose a lower resolution.", 34},
    ErrorCode{35, "the area is wider or higher than the scanner can deliver",
              "Choose a smaller area or a lower resolution: a line has at most 32752 pixels.", 35},
    ErrorCode{43, "the scanner is warming up",
              "Wait a minute, then scan again, or give it longer with --warm-up SECONDS.", 43},
    ErrorCode{0, "the scanner failed and gave no reason",
              "Check that the scanner is switched on and connected, then try again.", 62},
    ErrorCode{kUnknownError, "the module reports an unknown error",
              "Switch the scanner off and on, then try again.", 63},
    ErrorCode{kUsage, "the command line is not understood",
              "Read pmscan --help.", 64},
    ErrorCode{kUnsupported, "this combination is not possible",
              "Change one of the options named above; pmscan info tells what the scanner has.", 65},
    ErrorCode{kInputFile, "the picture for the bed cannot be read",
              "Name a PNG, TIFF, BMP or JPEG file that can be opened.", 66},
    ErrorCode{kCaptureUnreadable, "the capture cannot be read",
              "Name a file that --capture wrote; docs/capture-format.md tells how to edit one.",
              67},
    ErrorCode{kDeviceUnavailable, "the still-image device cannot be opened",
              "See with pmscan devices what the system knows; close other programs that scan.", 68},
    ErrorCode{kModuleMissing, "the scanner module cannot be loaded",
              "Put Pmddb832.dll beside pmscan.exe, or name it with --dll PATH.", 69},
    ErrorCode{kSimulation, "the profile or fault script of the simulated scanner cannot be used",
              "Correct the file; docs/simulator-profiles.md describes every key.", 70},
    ErrorCode{kOutputFile, "the picture cannot be written",
              "Check that the folder exists, is writable and has room, or choose another name.", 73},
    ErrorCode{kCaptureUnwritable, "the capture cannot be written",
              "Check that the folder exists, is writable and has room, or choose another name.", 74},
    ErrorCode{kProtocolViolation, "the module sent what the scanner's protocol does not allow",
              "Report it with the lines above: this is a fault of the module.", 76},
    ErrorCode{kReplayDiffers, "the module does not do what the capture tells",
              "Compare the module with the one of the capture; --tolerant goes on and counts.", 77},
    ErrorCode{kProfile, "the profile cannot be read or written",
              "Correct the file, or keep the settings again with --save-profile NAME --overwrite.",
              78},
    ErrorCode{kInterrupted, "the scan was interrupted",
              "What arrived before was kept; scan again when you like.", 130},
};
// clang-format on

// The row of a code; that of kUnknownError for a number that has none.
constexpr const ErrorCode& FindErrorCode(std::uint32_t code) {
  for (const ErrorCode& row : kErrorCodes) {
    if (row.code == code) return row;
  }
  return FindErrorCode(kUnknownError);
}

}  // namespace pmscan
