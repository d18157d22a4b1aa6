#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "pmscan/pictures/imaging_component.h"
#include "pmscan/pictures/picture_format.h"
#include "pmscan/scan/acquisition.h"
#include "pmscan/scan/growing_file.h"
#include "pmscan/scan/scan_mode.h"

namespace pmscan {

// A picture file and how its pages are written.
struct PictureFile {
  std::string name;  // in UTF-8
  PictureFormat format;
  ScanMode mode;  // the format can hold its pictures
  std::uint32_t dotsPerInch = 0;
  bool mayReplace = false;       // a file of the same name
  std::uint8_t sampleBits = 12;  // of deep samples, as the module delivers them
};

// Writes a picture file page by page and band by band; only TIFF files can have several pages. The
// file grows beside its place and takes the place with Commit; without it nothing is left behind.
// Everything throws Failure(kOutputFile); BeginPage also kUnsupported when this system has no
// encoder for such pictures.
class PictureWriter : public RowSink {
 public:
  explicit PictureWriter(const PictureFile& pictureFile);

  void BeginPage(std::uint32_t width, std::uint32_t height);

  void Write(std::span<const std::uint8_t> rows, std::uint32_t lineBytes,
             std::uint32_t lines) override;

  // Takes rows that hold the pixels as the picture has them: 12-bit colour is expanded already.
  void WritePixels(std::span<const std::uint8_t> rows, std::uint32_t lineBytes,
                   std::uint32_t lines);

  // The page ends and is as high as the lines that were written, or with `isKept` false is none.
  void EndPage(bool isKept = true);

  bool HasPages() const { return !pageLines_.empty(); }

  // Of the pixels in the file, and of the bytes in a line of them.
  const GUID& PixelFormat() const;
  std::uint32_t LineBytes(std::uint32_t width) const;

  // All pages have ended, and there is one. Returns the size of the file in bytes.
  std::uint64_t Commit();

 private:
  PictureWriter(const PictureFile& pictureFile, const std::string& growingName);
  void SetPixelFormat(const GUID& wanted);
  void SetPalette();
  void FillPage();
  void EncodePixels(std::span<const std::uint8_t> rows, std::uint32_t lineBytes,
                    std::uint32_t lines);
  std::uint64_t CommitTrimmed();
  void Require(HRESULT result, const char* step) const;

  const PictureFile file_;
  const GrowingFile growing_;  // before the objects that hold it open, so that it goes after them
  ComPointer<IWICImagingFactory> factory_;
  ComPointer<IWICStream> stream_;
  ComPointer<IWICBitmapEncoder> encoder_;
  ComPointer<IWICBitmapFrameEncode> frame_;
  bool swapsSamples_ = false;
  std::vector<std::uint8_t> converted_;  // the rows of a band as the picture has them
  std::vector<std::uint8_t> swapped_;    // and as the encoder wants them
  std::uint32_t pageWidth_ = 0;
  std::uint32_t pageHeight_ = 0;
  std::uint32_t linesWritten_ = 0;        // of the page
  std::vector<std::uint32_t> pageLines_;  // of the pages that are kept
  bool needsTrimming_ = false;            // the file has lines, or a page, that are not to stay
};

}  // namespace pmscan
