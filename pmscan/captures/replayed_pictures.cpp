#include "pmscan/captures/replayed_pictures.h"

#include "pmscan/captures/call_values.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/pictures/picture_origin.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/scan/scan_plan.h"

namespace pmscan {
namespace {

const ScanMode& ModeOf(std::uint32_t pixelType, std::uint32_t outputFormat) {
  for (const ScanMode& mode : kScanModes) {
    if (mode.pixelType == pixelType && mode.outputFormat == outputFormat) return mode;
  }
  throw Failure(kUnsupported, "pmscan has no mode for the pictures of the capture: pixel type " +
                                  std::to_string(pixelType) + ", output format " +
                                  std::to_string(outputFormat) + ". Leave out --output.");
}

}  // namespace

void ReplayedPictures::Begin(const pmddb832::ScannerSettings& settings,
                             const std::vector<capture::Value>& arguments,
                             const std::vector<capture::Value>& setup) {
  wasBegun_ = true;
  lineBytes_ = ValueOf(setup, "lineBytes");
  if (writer_.has_value() || lineBytes_ == 0) return;
  const ScanMode& mode = ModeOf(settings.pixelType, ValueOf(arguments, "outputFormat"));
  const PictureFormat& format = FormatByFileName(file_);
  RequireHolds(format, mode);
  writer_.emplace(PictureFile{file_, format, mode, settings.resolution, mayReplace_,
                              DeepBits(settings), kUsualQuality, OriginOf(settings)});
  height_ = ValueOf(setup, "heightLines");
  writer_->BeginPage(ValueOf(setup, "widthPixels"), height_);
}

void ReplayedPictures::TakeBand(const std::vector<std::uint8_t>& rows,
                                const std::vector<capture::Value>& band) {
  const std::uint32_t lines = ValueOf(band, "lines");
  const std::size_t bytes = std::size_t{lines} * lineBytes_;
  if (!writer_.has_value() || isDone_ || lines == 0 || bytes > rows.size()) return;
  writer_->Write(std::span(rows).first(bytes), lineBytes_, lines);
  lines_ += lines;
  isDone_ = ValueOf(band, "done") != 0;
}

std::string ReplayedPictures::Obstacle(bool mayBePart) const {
  if (isDone_ || (mayBePart && lines_ > 0)) return {};
  return file_ + " was not written: " + WhatIsMissing();
}

std::string ReplayedPictures::Commit() {
  writer_->EndPage();
  writer_->Commit();
  if (isDone_) return {};
  return "Note: " + file_ + " holds the " + std::to_string(lines_) + " of " +
         std::to_string(height_) + " lines that came.\n";
}

std::string ReplayedPictures::WhatIsMissing() const {
  if (!wasBegun_) return "the capture's host starts no scan.";
  if (!writer_.has_value()) return "no scan could be set up.";
  if (lines_ == 0) return "not one line of the picture came.";
  return "only " + std::to_string(lines_) + " of " + std::to_string(height_) +
         " lines of the picture came; with --tolerant they are kept.";
}

}  // namespace pmscan
