#pragma once

#include <tiffio.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "pmscan/native/picture_decoders.h"

namespace pmscan {

// How the first picture of a TIFF file is stored.
struct TiffLayout {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  double dotsPerInch = 0;         // 0 when not told
  std::uint16_t photometric = 0;  // one of PHOTOMETRIC_...
  std::uint16_t bits = 1;         // of a sample
  std::uint16_t samples = 1;      // of a pixel
  bool isPremultiplied = false;   // its colours are mixed with black already
  bool isByLines = false;         // whole lines of whole pixels, of unsigned samples, one by one
};

// What the library reads from, and what it says of that first.
struct TiffStream {
  std::span<const std::uint8_t> file;
  std::size_t place = 0;
  std::string reason;
};

// A TIFF file in memory. Everything throws PictureError.
class TiffFile {
 public:
  // The file's bytes outlive this.
  explicit TiffFile(const PictureSource& source);

  const TiffLayout& Layout() const { return layout_; }

  // Decodes a line of a picture by lines, in order from the first one; `to` has room for it.
  void ReadLine(std::uint32_t row, void* to);

  // All pixels, from the top left, whatever the layout: see TIFFGetR and its like. The colours are
  // mixed with black by their opacity.
  std::vector<std::uint32_t> ReadColours(std::uint32_t width, std::uint32_t height);

 private:
  struct Closer {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
  };

  static std::unique_ptr<TIFF, Closer> Open(TiffStream& stream, std::uint64_t mostBytes);
  void Require(bool isDone) const;

  TiffStream stream_;
  std::unique_ptr<TIFF, Closer> tiff_;
  TiffLayout layout_;
};

}  // namespace pmscan
