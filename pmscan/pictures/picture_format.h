#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "pmscan/scan/scan_mode.h"

namespace pmscan {

enum class Container { kPng, kTiff, kPdf, kBmp, kJpeg };

// In place of a file's name.
inline constexpr std::string_view kStandardOutput = "-";

// Of JPEG, from 1 to 100.
inline constexpr std::uint32_t kUsualQuality = 85;

struct PictureFormat {
  std::string_view extension;  // lower case, without the dot
  std::string_view name;
  Container container;
};

// The format that a file's name asks for by its extension, in either case. Throws Failure(kUsage).
const PictureFormat& FormatByFileName(std::string_view fileName);

// The format of that name, which is an extension in either case; null when there is none.
const PictureFormat* FindFormat(std::string_view extension);
std::string FormatNames();  // "png, tif, ..."

// Whether a file of the format can have several pages.
constexpr bool HoldsPages(const PictureFormat& format) {
  return format.container == Container::kTiff || format.container == Container::kPdf;
}

// Whether pictures of the layout are JPEG in files of the format.
constexpr bool IsJpegIn(Container container, PixelLayout layout) {
  const bool can = layout == PixelLayout::kGrey8 || layout == PixelLayout::kBgr24;
  return can && (container == Container::kJpeg || container == Container::kPdf);
}

// Throws Failure(kUnsupported), saying what to use instead, when files of the format cannot hold
// the pictures of the mode.
void RequireHolds(const PictureFormat& format, const ScanMode& mode);

}  // namespace pmscan
