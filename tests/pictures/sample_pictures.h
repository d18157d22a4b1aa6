#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace pmscan::tests {

// A picture file, and what its picture is.
struct SamplePicture {
  const char* name;
  const char* digits;  // of the file's bytes, hexadecimal
  std::uint32_t dotsPerInch;
  std::uint32_t width;
  std::uint32_t height;
  std::vector<std::uint16_t> samples;  // red, green and blue of each pixel, from the top left
};

// One of each kind that a reader of originals knows and that loses nothing.
extern const std::vector<SamplePicture> kSamplePictures;

// The bytes of its file.
std::string FileOf(const SamplePicture& picture);

}  // namespace pmscan::tests
