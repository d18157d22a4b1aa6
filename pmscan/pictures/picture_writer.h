#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "pmscan/encoders/byte_file.h"
#include "pmscan/encoders/page_encoder.h"
#include "pmscan/pictures/growing_file.h"
#include "pmscan/pictures/picture_format.h"
#include "pmscan/pictures/temporary_file.h"
#include "pmscan/scan/acquisition.h"
#include "pmscan/scan/scan_mode.h"

namespace pmscan {

// A picture file and how its pages are written.
struct PictureFile {
  std::string name;  // in UTF-8; kStandardOutput for that
  PictureFormat format;
  ScanMode mode;  // the format can hold its pictures
  std::uint32_t dotsPerInch = 0;
  bool mayReplace = false;       // a file of the same name
  std::uint8_t sampleBits = 12;  // of deep samples, as the module delivers them
  std::uint32_t quality = kUsualQuality;
  PictureOrigin origin{};
};

// Writes a picture file page by page and band by band; only some formats can have several pages.
// The file grows beside its place and takes the place with Commit; that for standard output is a
// temporary one. Without Commit nothing is left behind. Everything throws Failure(kOutputFile);
// BeginPage also kUnsupported for a picture that is too large for the format.
class PictureWriter : public RowSink {
 public:
  explicit PictureWriter(const PictureFile& pictureFile);

  void BeginPage(std::uint32_t width, std::uint32_t height);

  void Write(std::span<const std::uint8_t> rows, std::uint32_t lineBytes,
             std::uint32_t lines) override;

  // The page ends and is as high as the lines that were written, or with `isKept` false is none.
  void EndPage(bool isKept = true);

  bool HasPages() const { return pages_ > 0; }

  // All pages have ended, and there is one. Returns the size of the file in bytes.
  std::uint64_t Commit();

 private:
  const PictureFile file_;
  // One of the two; before the object that holds it open, so that it goes after that.
  const std::unique_ptr<const TemporaryFile> temporary_;  // of a picture for standard output
  const std::unique_ptr<const GrowingFile> growing_;      // of any other
  ByteFile bytes_;
  const std::unique_ptr<PageEncoder> encoder_;
  std::vector<std::uint8_t> converted_;  // the rows of a band as the picture has them
  std::uint32_t pageWidth_ = 0;
  std::uint32_t linesWritten_ = 0;  // of the page
  std::uint32_t pages_ = 0;         // that are kept
};

}  // namespace pmscan
