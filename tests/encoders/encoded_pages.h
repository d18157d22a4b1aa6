#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "pmscan/encoders/byte_file.h"
#include "pmscan/encoders/page_encoder.h"
#include "pmscan/pictures/picture_format.h"

namespace pmscan::tests {

// A page as an encoder takes it.
struct Page {
  PixelLayout layout;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::vector<std::vector<std::uint8_t>> lines{};
};

// Noise between plain stretches of all lengths; the same for the same `seed`.
Page NoisePage(PixelLayout layout, std::uint32_t width, std::uint32_t height, std::uint32_t seed);

// Slow changes of light, as photographs have them.
Page SmoothPage(PixelLayout layout, std::uint32_t width, std::uint32_t height);

// What a page shows: red, green and blue of every pixel, row by row.
struct Picture {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::vector<std::uint16_t> samples{};

  bool operator==(const Picture&) const = default;
};

// The samples have 16 bits when the layout is deep, else 8.
Picture ShownBy(const Page& page);

// The form that the pages of the tests are encoded in: 144 dots per inch, quality 90, by a
// "SCANNER (TM) QM-1" and "pmscan 7", on the 3rd of May 2026 at 4:05:06.
PageForm FormOf(PixelLayout layout);

// A file in the working directory, which goes with this object.
class EncodedFile {
 public:
  EncodedFile(Container container, PixelLayout layout, std::string name);
  ~EncodedFile();
  EncodedFile(const EncodedFile&) = delete;
  EncodedFile& operator=(const EncodedFile&) = delete;

  // Encodes the first `lines` lines of a page that is told to be as high as it is.
  void Add(const Page& page, std::uint32_t lines);
  void Add(const Page& page) { Add(page, page.height); }
  void Finish();

  const std::string& Name() const { return name_; }

 private:
  const std::string name_;
  ByteFile bytes_;
  const std::unique_ptr<PageEncoder> encoder_;
};

// What a program prints; it succeeds.
std::string OutputOf(const std::string& command);

// The picture that a program prints as a PNM file; its samples have as many bits as in that.
Picture PictureFrom(const std::string& command);

// Without the bits that pictures of 8 bits do not have.
Picture InEightBits(Picture deep);

}  // namespace pmscan::tests
