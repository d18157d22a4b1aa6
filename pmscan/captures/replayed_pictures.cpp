#include "pmscan/captures/replayed_pictures.h"

#include "pmscan/captures/call_values.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"

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
  lineBytes = ValueOf(setup, "lineBytes");
  if (writer.has_value() || lineBytes == 0) return;
  const ScanMode& mode = ModeOf(settings.pixelType, ValueOf(arguments, "outputFormat"));
  const PictureFormat& format = FormatByFileName(file);
  RequireHolds(format, mode);
  writer.emplace(PictureFile{file, format, mode, settings.resolution, mayReplace});
  writer->BeginPage(ValueOf(setup, "widthPixels"), ValueOf(setup, "heightLines"));
}

void ReplayedPictures::TakeBand(const std::vector<std::uint8_t>& rows,
                                const std::vector<capture::Value>& band) {
  const std::uint32_t lines = ValueOf(band, "lines");
  const std::size_t bytes = std::size_t{lines} * lineBytes;
  if (!writer.has_value() || isDone || lines == 0 || bytes > rows.size()) return;
  writer->Write(std::span(rows).first(bytes), lineBytes, lines);
  isDone = ValueOf(band, "done") != 0;
}

void ReplayedPictures::Commit() {
  if (!isDone) {
    throw Failure(kUnsupported,
                  "The capture holds no whole picture: " + file + " was not written.");
  }
  writer->EndPage();
  writer->Commit();
}

}  // namespace pmscan
