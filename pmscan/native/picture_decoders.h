#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>

#include "simulator/page/picture.h"

// Picture files that lie in memory. Every decoder delivers the first picture as it is stored, not
// turned, on white where it is transparent, with its resolution, and throws PictureError.
namespace pmscan {

// A file that cannot be decoded. what() says why, in words that follow a colon.
class PictureError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

inline constexpr const char* kFileEnds = "the file ends in the middle of its picture";

// The bytes of a file, and how many pixels its picture may have.
struct PictureSource {
  std::span<const std::uint8_t> file;
  std::uint64_t mostPixels;
};

simulator::Picture DecodeBmp(const PictureSource& source);
simulator::Picture DecodeJpeg(const PictureSource& source);
simulator::Picture DecodePng(const PictureSource& source);
simulator::Picture DecodeTiff(const PictureSource& source);

// The picture of any of these files, found by how it begins, turned upright.
simulator::Picture DecodePicture(const PictureSource& source);

// Begins a picture without samples. A resolution below 1, or one that no picture has, is not told.
simulator::Picture BeginPicture(std::uint32_t width, std::uint32_t height, double dotsPerInch,
                                const PictureSource& source);

// Adds pixels of four bytes: blue, green, red and their opacity.
void AddPixels(std::span<const std::uint8_t> pixels, simulator::Picture& picture);

}  // namespace pmscan
