#include "pmscan/pictures/picture_format.h"

#include <array>
#include <string>

#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/named_rows.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

constexpr std::array kFormats{
    PictureFormat{"png", "PNG", Container::kPng},    PictureFormat{"tif", "TIFF", Container::kTiff},
    PictureFormat{"tiff", "TIFF", Container::kTiff}, PictureFormat{"pdf", "PDF", Container::kPdf},
    PictureFormat{"bmp", "BMP", Container::kBmp},    PictureFormat{"jpg", "JPEG", Container::kJpeg},
    PictureFormat{"jpeg", "JPEG", Container::kJpeg},
};

// What a container cannot hold.
struct Gap {
  Container container;
  PixelLayout layout;
  std::string_view instead;
};

constexpr std::array kGaps{
    Gap{Container::kBmp, PixelLayout::kGrey16, "--mode grey"},
    Gap{Container::kBmp, PixelLayout::kRgb48, "--mode colour"},
    Gap{Container::kJpeg, PixelLayout::kBlackWhite, "--mode grey"},
    Gap{Container::kJpeg, PixelLayout::kPalette, "--mode colour"},
    Gap{Container::kJpeg, PixelLayout::kGrey16, "--mode grey"},
    Gap{Container::kJpeg, PixelLayout::kRgb48, "--mode colour"},
};

std::string_view ExtensionOf(std::string_view fileName) {
  const std::size_t dot = fileName.find_last_of("./\\");
  if (dot == std::string_view::npos || fileName[dot] != '.') return {};
  return fileName.substr(dot + 1);
}

}  // namespace

const PictureFormat* FindFormat(std::string_view extension) {
  for (const PictureFormat& format : kFormats) {
    if (IsSameWord(format.extension, extension)) return &format;
  }
  return nullptr;
}

std::string FormatNames() {
  std::string names;
  for (const PictureFormat& format : kFormats) {
    names.append(names.empty() ? "" : ", ").append(format.extension);
  }
  return names;
}

const PictureFormat& FormatByFileName(std::string_view fileName) {
  if (const PictureFormat* const format = FindFormat(ExtensionOf(fileName))) return *format;
  throw Failure(kUsage, "The name \"" + std::string(fileName) +
                            "\" tells no picture format: it ends in .png, .tif, .tiff, .pdf, "
                            ".bmp, .jpg or .jpeg; or say it with --format.");
}

void RequireHolds(const PictureFormat& format, const ScanMode& mode) {
  for (const Gap& gap : kGaps) {
    if (gap.container != format.container || gap.layout != mode.layout) continue;
    throw Failure(kUnsupported, std::string(format.name) + " files cannot hold " +
                                    std::string(mode.description) +
                                    ": write a .png, .tif or .pdf file, or scan with " +
                                    std::string(gap.instead) + ".");
  }
}

}  // namespace pmscan
