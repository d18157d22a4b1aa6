#include "pmscan/scan/acquisition.h"

#include <algorithm>
#include <string>
#include <vector>

#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

constexpr std::uint32_t kBandBytes = 256 * 1024;
// The module counts the lines of a band in 16 bits.
constexpr std::uint32_t kMostBandLines = 0xFFFF;

// Cancels the scan when it is left before its end, but only when there is one under way: before
// the first band the scanner has nothing to cancel, and after a failure it has stopped by itself.
class ScanUnderWay {
 public:
  explicit ScanUnderWay(const ModuleExports& moduleExports) : module_(moduleExports) {}
  ~ScanUnderWay() {
    if (isRunning) module_.abortScan();
  }
  ScanUnderWay(const ScanUnderWay&) = delete;
  ScanUnderWay& operator=(const ScanUnderWay&) = delete;

  bool isRunning = false;

 private:
  const ModuleExports& module_;
};

// What a band's buffer holds before the module writes into it, as no picture has it. What fills a
// line up to a multiple of four bytes is 0, as the module leaves it alone.
std::vector<std::uint8_t> MarkedRows(std::uint32_t lines, std::uint32_t lineBytes) {
  constexpr std::uint32_t kMostFilling = 3;
  std::vector<std::uint8_t> rows(std::size_t{lines} * lineBytes);
  const std::uint32_t pixelBytes = std::max(lineBytes, kMostFilling + 1) - kMostFilling;
  std::uint32_t noise = 1;
  for (std::size_t line = 0; line < rows.size(); line += lineBytes) {
    for (std::size_t place = line; place < line + pixelBytes; ++place) {
      noise = noise * 1664525 + 1013904223;
      rows[place] = static_cast<std::uint8_t>(noise >> 24);
    }
  }
  return rows;
}

// Lines of a band that failed: the module writes them from the top, and does not tell how many.
std::uint32_t LinesWritten(const std::vector<std::uint8_t>& rows,
                           const std::vector<std::uint8_t>& marked, std::uint32_t lineBytes) {
  const auto place = std::mismatch(rows.rbegin(), rows.rend(), marked.rbegin());
  const auto bytes = static_cast<std::size_t>(rows.rend() - place.first);
  return static_cast<std::uint32_t>((bytes + lineBytes - 1) / lineBytes);
}

void RequireSensible(const pmddb832::AcquisitionBand& band, std::uint32_t mostLines) {
  if (band.lines >= 1 && band.lines <= mostLines) return;
  throw Failure(kTransferFailed, "The module delivered " + std::to_string(band.lines) +
                                     " lines where 1 to " + std::to_string(mostLines) +
                                     " were asked for.");
}

}  // namespace

pmddb832::AcquisitionSetup PrepareAcquisition(const ModuleExports& module,
                                              std::uint32_t outputFormat,
                                              pmddb832::ProgressCallback progress) {
  pmddb832::AcquisitionSetup setup{};
  module.initAcquire(outputFormat, progress, &setup);
  if (setup.status != pmddb832::kAcquisitionGoOn || setup.lineBytes == 0) {
    throw Failure(module.getScanError());
  }
  return setup;
}

void AcquirePicture(const ModuleExports& module, const pmddb832::AcquisitionSetup& setup,
                    const AcquisitionManners& manners, RowSink& sink) {
  const std::uint32_t bandLines = std::clamp(kBandBytes / setup.lineBytes, 1u, kMostBandLines);
  const std::vector<std::uint8_t> marked = MarkedRows(bandLines, setup.lineBytes);
  std::vector<std::uint8_t> rows;
  const auto deliver = [&](std::uint32_t lines) {
    if (lines == 0) return;
    const std::size_t bytes = std::size_t{lines} * setup.lineBytes;
    sink.Write(std::span(rows).first(bytes), setup.lineBytes, lines);
  };
  ScanUnderWay scan(module);
  pmddb832::AcquisitionBand band{};
  std::uint32_t trials = 0;
  while (band.done == 0) {
    if (manners.isInterrupted()) throw Failure(kInterrupted);
    rows = marked;
    module.acquireImage(rows.data(), static_cast<std::uint32_t>(rows.size()), &band);
    scan.isRunning = band.status == pmddb832::kAcquisitionGoOn && band.done == 0;
    if (band.status == pmddb832::kAcquisitionGoOn) {
      RequireSensible(band, bandLines);
      deliver(band.lines);
      continue;
    }
    const std::uint32_t code = module.getScanError();
    if (code != kWarmingUp || trials == manners.warmUpTries) {
      deliver(LinesWritten(rows, marked, setup.lineBytes));
      throw Failure(code);
    }
    manners.waitForWarmUp(++trials);
  }
}

}  // namespace pmscan
