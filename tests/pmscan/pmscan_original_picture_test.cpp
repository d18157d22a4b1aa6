#include <doctest/doctest.h>

#include <string_view>

#include "pmscan/pictures/original_picture.h"

namespace {

using pmscan::OrientationIn;
using simulator::Picture;
using Bytes = std::vector<std::uint8_t>;

Bytes Joined(std::initializer_list<std::string_view> parts) {
  Bytes bytes;
  for (const std::string_view part : parts) bytes.insert(bytes.end(), part.begin(), part.end());
  return bytes;
}

// A directory of one entry: orientation 6, in either order of bytes.
constexpr std::string_view kLittle("II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0\x06\0\0\0", 22);
constexpr std::string_view kBig("MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0", 22);

TEST_CASE("pmscan: TIFF, JPEG and PNG files say how their picture is turned") {
  CHECK(OrientationIn(Joined({kLittle})) == 6);
  CHECK(OrientationIn(Joined({kBig})) == 6);
  const std::string_view jpeg(
      "\xFF\xD8\xFF\xE0\0\x04JF\xFF\xE1\0\x1E"
      "Exif\0\0",
      18);
  CHECK(OrientationIn(Joined({jpeg, kBig})) == 6);
  const std::string_view png(
      "\x89PNG\r\n\x1A\n\0\0\0\x01IDAT?CRC?\0\0\0\x16"
      "eXIf",
      29);
  CHECK(OrientationIn(Joined({png, kLittle})) == 6);
}

TEST_CASE("pmscan: a picture that says nothing, or something broken, is upright") {
  CHECK(OrientationIn({}) == 1);
  CHECK(OrientationIn(Joined({"BM something"})) == 1);
  Bytes odd = Joined({kLittle});
  odd[18] = 9;
  CHECK(OrientationIn(odd) == 1);
  const Bytes whole = Joined({std::string_view("\xFF\xD8\xFF\xE1\0\x1E"
                                               "Exif\0\0",
                                               12),
                              kBig});
  for (std::size_t bytes = 0; bytes < whole.size() - 4; ++bytes) {
    CHECK(OrientationIn(std::span(whole).first(bytes)) == 1);
  }
}

// The red samples of a picture of two columns and three rows, 1 2 / 3 4 / 5 6, once it is upright.
std::vector<std::uint16_t> Turned(unsigned orientation) {
  Picture picture{2, 3, 100, {}};
  for (std::uint16_t red = 1; red <= 6; ++red) {
    picture.samples.insert(picture.samples.end(), {red, 0, 0});
  }
  const Picture upright = pmscan::Upright(picture, orientation);
  CHECK(upright.width == (orientation < 5 ? 2 : 3));
  CHECK(upright.height == (orientation < 5 ? 3 : 2));
  std::vector<std::uint16_t> reds;
  for (std::size_t i = 0; i < upright.samples.size(); i += 3) reds.push_back(upright.samples[i]);
  return reds;
}

TEST_CASE("pmscan: a picture is turned upright in each of the eight ways") {
  using Reds = std::vector<std::uint16_t>;
  CHECK(Turned(1) == Reds{1, 2, 3, 4, 5, 6});
  CHECK(Turned(2) == Reds{2, 1, 4, 3, 6, 5});
  CHECK(Turned(3) == Reds{6, 5, 4, 3, 2, 1});
  CHECK(Turned(4) == Reds{5, 6, 3, 4, 1, 2});
  CHECK(Turned(5) == Reds{1, 3, 5, 2, 4, 6});
  CHECK(Turned(6) == Reds{5, 3, 1, 6, 4, 2});
  CHECK(Turned(7) == Reds{6, 4, 2, 5, 3, 1});
  CHECK(Turned(8) == Reds{2, 4, 6, 1, 3, 5});
}

TEST_CASE("pmscan: white shines through where an original is transparent") {
  const Bytes pixels{1, 2, 3, 0, 0x10, 0x20, 0x30, 255, 0, 0, 0, 51};
  CHECK(pmscan::OnWhite(pixels) == std::vector<std::uint16_t>{65535, 65535, 65535, 0x3030, 0x2020,
                                                              0x1010, 52428, 52428, 52428});
}

}  // namespace
