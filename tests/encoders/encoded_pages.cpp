#include "tests/encoders/encoded_pages.h"

#include <doctest/doctest.h>
#include <stdio.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <random>
#include <sstream>
#include <utility>

#include "pmscan/encoders/encoders.h"

namespace pmscan::tests {
namespace {

// Of a line of bits: whether that of a pixel is set.
bool IsWhite(const std::vector<std::uint8_t>& line, std::uint32_t x) {
  return (line[x / 8] >> (7 - x % 8) & 1) != 0;
}

std::array<std::uint16_t, 3> ColourOf(const Page& page, std::uint32_t x, std::uint32_t y) {
  const std::vector<std::uint8_t>& line = page.lines[y];
  const auto deep = [&](std::size_t sample) {
    return static_cast<std::uint16_t>(line[2 * sample] | line[2 * sample + 1] << 8);
  };
  const auto level = [](unsigned number) { return static_cast<std::uint16_t>(number * 51); };
  switch (page.layout) {
    case PixelLayout::kBlackWhite: {
      const std::uint16_t light = IsWhite(line, x) ? 255 : 0;
      return {light, light, light};
    }
    case PixelLayout::kGrey8:
      return {line[x], line[x], line[x]};
    case PixelLayout::kGrey16:
      return {deep(x), deep(x), deep(x)};
    case PixelLayout::kPalette:
      return {level(line[x] / 36u), level(line[x] / 6u % 6), level(line[x] % 6u)};
    case PixelLayout::kBgr24:
      return {line[3 * x + 2], line[3 * x + 1], line[3 * x]};
    default:
      return {deep(3 * x), deep(3 * x + 1), deep(3 * x + 2)};
  }
}

std::uint8_t Fitting(PixelLayout layout, std::uint64_t value) {
  return static_cast<std::uint8_t>(layout == PixelLayout::kPalette ? value % 216 : value);
}

// A number behind blanks in the head of a PNM file.
std::uint32_t TakeNumber(std::istream& stream) {
  std::uint32_t number = 0;
  stream >> number;
  REQUIRE(stream);
  return number;
}

Picture PictureOfBits(std::istream& stream, std::uint32_t width, std::uint32_t height) {
  Page page{PixelLayout::kBlackWhite, width, height};
  std::string line((width + 7) / 8, '\0');
  for (std::uint32_t y = 0; y < height; ++y) {
    stream.read(line.data(), static_cast<std::streamsize>(line.size()));
    page.lines.emplace_back();
    // The bits of a PNM file are the ink.
    for (const char byte : line) page.lines.back().push_back(static_cast<std::uint8_t>(~byte));
  }
  REQUIRE(stream);
  return ShownBy(page);
}

}  // namespace

Page NoisePage(PixelLayout layout, std::uint32_t width, std::uint32_t height, std::uint32_t seed) {
  std::mt19937 random(seed);
  Page page{layout, width, height};
  for (std::uint32_t y = 0; y < height; ++y) {
    std::vector<std::uint8_t>& line = page.lines.emplace_back(LineBytes(layout, width));
    for (std::size_t i = 0; i < line.size();) {
      const std::size_t stretch =
          std::min<std::size_t>(random() % 9 == 0 ? random() % 700 : 1, line.size() - i);
      const bool isAsAbove = random() % 4 == 0 && y > 0;
      const std::uint8_t value = Fitting(layout, stretch > 1 ? random() % 2 * 255 : random());
      for (std::size_t end = i + stretch; i < end; ++i) {
        line[i] = isAsAbove ? page.lines[y - 1][i] : value;
      }
    }
  }
  return page;
}

Page SmoothPage(PixelLayout layout, std::uint32_t width, std::uint32_t height) {
  Page page{layout, width, height};
  const std::uint32_t channels = SamplesPerPixel(layout);
  for (std::uint32_t y = 0; y < height; ++y) {
    std::vector<std::uint8_t>& line = page.lines.emplace_back(LineBytes(layout, width));
    for (std::uint32_t i = 0; i < line.size(); ++i) {
      const std::uint32_t x = i / channels;
      const std::uint32_t shares[3] = {x * 255 / width, y * 255 / height, (x + y) / 2 % 256};
      line[i] = static_cast<std::uint8_t>(shares[i % channels]);
    }
  }
  return page;
}

Picture ShownBy(const Page& page) {
  Picture picture{page.width, page.height};
  for (std::uint32_t y = 0; y < page.height; ++y) {
    for (std::uint32_t x = 0; x < page.width; ++x) {
      const auto colour = ColourOf(page, x, y);
      picture.samples.insert(picture.samples.end(), colour.begin(), colour.end());
    }
  }
  return picture;
}

PageForm FormOf(PixelLayout layout) {
  PageForm form{layout, 144, 90, {"SCANNER (TM) QM-1", "pmscan 7", {}}};
  form.origin.date.tm_year = 126;
  form.origin.date.tm_mon = 4;
  form.origin.date.tm_mday = 3;
  form.origin.date.tm_hour = 4;
  form.origin.date.tm_min = 5;
  form.origin.date.tm_sec = 6;
  return form;
}

EncodedFile::EncodedFile(Container container, PixelLayout layout, std::string name)
    : name_(std::move(name)),
      bytes_(name_, name_),
      encoder_(MakeEncoder(container, bytes_, FormOf(layout))) {}

EncodedFile::~EncodedFile() {
  std::error_code ignored;
  std::filesystem::remove(name_, ignored);
}

void EncodedFile::Add(const Page& page, std::uint32_t lines) {
  encoder_->BeginPage(page.width, page.height);
  for (std::uint32_t y = 0; y < lines; ++y) encoder_->WriteLine(page.lines[y]);
  encoder_->EndPage(lines);
}

void EncodedFile::Finish() {
  encoder_->Finish();
  bytes_.Close();
}

std::string OutputOf(const std::string& command) {
  CAPTURE(command);
  FILE* const pipe = popen(command.c_str(), "r");
  REQUIRE(pipe != nullptr);
  std::string output;
  std::array<char, 4096> part;
  for (std::size_t read = 1; read > 0;) {
    read = fread(part.data(), 1, part.size(), pipe);
    output.append(part.data(), read);
  }
  REQUIRE(pclose(pipe) == 0);
  return output;
}

Picture PictureFrom(const std::string& command) {
  std::istringstream stream(OutputOf(command));
  std::string kind;
  stream >> kind;
  CAPTURE(command);
  Picture picture;
  picture.width = TakeNumber(stream);
  picture.height = TakeNumber(stream);
  if (kind == "P4") {
    stream.get();
    return PictureOfBits(stream, picture.width, picture.height);
  }
  REQUIRE((kind == "P5" || kind == "P6"));
  const bool isDeep = TakeNumber(stream) > 255;
  stream.get();
  const std::size_t pixels = std::size_t{picture.width} * picture.height;
  for (std::size_t i = 0; i < pixels * (kind == "P6" ? 3 : 1); ++i) {
    const int high = isDeep ? stream.get() << 8 : 0;
    const auto sample = static_cast<std::uint16_t>(high | stream.get());
    picture.samples.insert(picture.samples.end(), kind == "P6" ? 1 : 3, sample);
  }
  REQUIRE(stream);
  return picture;
}

Picture InEightBits(Picture deep) {
  for (std::uint16_t& sample : deep.samples) sample = static_cast<std::uint16_t>(sample >> 8);
  return deep;
}

}  // namespace pmscan::tests
