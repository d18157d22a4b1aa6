#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "pmscan/acquisition.h"
#include "pmscan/growing_file.h"
#include "pmscan/imaging_component.h"
#include "pmscan/picture_format.h"
#include "pmscan/scan_mode.h"

namespace pmscan {

// Writes a picture file band by band. The picture grows in a file beside its place and takes the
// place, and that of an older file, with Commit; without it nothing is left behind. Everything
// throws Failure(kOutputFile); the constructor also kUnsupported when this system has no encoder
// for such pictures.
class PictureWriter : public RowSink {
 public:
  // `file` in UTF-8; the format can hold the pictures of the mode.
  PictureWriter(const std::string& file, const PictureFormat& pictureFormat,
                const ScanMode& scanMode, std::uint32_t width, std::uint32_t height,
                std::uint32_t dotsPerInch);

  void Write(std::span<const std::uint8_t> rows, std::uint32_t lineBytes,
             std::uint32_t lines) override;

  // All lines are written. Returns the size of the file in bytes.
  std::uint64_t Commit();

 private:
  void OpenFrame(std::uint32_t width, std::uint32_t height, std::uint32_t dotsPerInch);
  void SetPixelFormat(const GUID& wanted);
  void SetPalette();
  void WritePixels(std::span<const std::uint8_t> rows, std::uint32_t lineBytes,
                   std::uint32_t lines);
  void Require(HRESULT result, const char* step) const;

  const std::string name;
  const GrowingFile growing;  // before the objects that hold it open, so that it goes after them
  const PictureFormat format;
  const ScanMode mode;
  ComPointer<IWICImagingFactory> factory;
  ComPointer<IWICStream> stream;
  ComPointer<IWICBitmapEncoder> encoder;
  ComPointer<IWICBitmapFrameEncode> frame;
  bool swapsSamples = false;
  std::vector<std::uint8_t> prepared;  // the rows of a band as the encoder wants them
};

}  // namespace pmscan
