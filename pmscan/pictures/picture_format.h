#pragma once

#include <string_view>

#include "pmscan/scan/scan_mode.h"

namespace pmscan {

enum class Container { kPng, kTiff, kBmp, kJpeg };

struct PictureFormat {
  std::string_view extension;  // lower case, without the dot
  std::string_view name;
  Container container;
};

// The format that a file's name asks for by its extension, in either case. Throws Failure(kUsage).
const PictureFormat& FormatByFileName(std::string_view fileName);

// Throws Failure(kUnsupported), saying what to use instead, when files of the format cannot hold
// the pictures of the mode.
void RequireHolds(const PictureFormat& format, const ScanMode& mode);

}  // namespace pmscan
