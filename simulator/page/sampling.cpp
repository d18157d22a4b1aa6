#include "simulator/page/sampling.h"

#include <algorithm>

namespace simulator {
namespace {

constexpr std::uint16_t kWhite = 0xFFFF;

std::uint16_t SampleOrBed(const Picture& picture, std::uint64_t x, std::uint64_t y,
                          std::uint32_t channel) {
  if (x >= picture.width || y >= picture.height) return kWhite;
  return picture.samples[(y * picture.width + x) * 3 + channel];
}

// Whether the centre of the picture's pixel `index` lies inside the scanned pixel's footprint.
bool CentreInside(std::uint64_t index, std::uint64_t scanned, std::uint64_t pictureDpi,
                  std::uint64_t scanDpi) {
  const std::uint64_t centre = (2 * index + 1) * scanDpi;
  return 2 * scanned * pictureDpi <= centre && centre < 2 * (scanned + 1) * pictureDpi;
}

std::vector<std::uint64_t> IndicesInside(std::uint64_t scanned, std::uint64_t pictureDpi,
                                         std::uint64_t scanDpi) {
  std::vector<std::uint64_t> indices;
  const std::uint64_t last = (scanned + 1) * pictureDpi / scanDpi;
  for (std::uint64_t i = scanned * pictureDpi / scanDpi; i <= last; ++i) {
    if (CentreInside(i, scanned, pictureDpi, scanDpi)) indices.push_back(i);
  }
  if (indices.empty()) indices.push_back((2 * scanned + 1) * pictureDpi / (2 * scanDpi));
  return indices;
}

}  // namespace

std::array<std::uint16_t, 3> ScannedPixel(const Picture& picture, std::uint32_t dotsPerInch,
                                          std::uint32_t x, std::uint32_t y) {
  const auto columns = IndicesInside(x, picture.dotsPerInch, dotsPerInch);
  const auto rows = IndicesInside(y, picture.dotsPerInch, dotsPerInch);
  const std::uint64_t count = columns.size() * rows.size();
  std::array<std::uint16_t, 3> pixel{};
  for (std::uint32_t channel = 0; channel < 3; ++channel) {
    std::uint64_t sum = count / 2;
    for (const std::uint64_t row : rows) {
      for (const std::uint64_t column : columns) sum += SampleOrBed(picture, column, row, channel);
    }
    pixel[channel] = static_cast<std::uint16_t>(sum / count);
  }
  return pixel;
}

LineSampler::LineSampler(const Picture& scanned, std::uint32_t scanDotsPerInch, std::uint32_t left,
                         std::uint32_t width)
    : picture_(scanned), dotsPerInch_(scanDotsPerInch), line_(std::size_t{width} * 3) {
  columns_.reserve(width);
  for (std::uint32_t x = 0; x < width; ++x) columns_.push_back(Footprint(left + x));
  sums_.resize(std::size_t{picture_.width} * 3);
}

// A centre, 2 i + 1 half pixels of the picture, is inside from 2 i + 1 >= 2 scanned * ratio on.
LineSampler::Span LineSampler::Footprint(std::uint32_t scanned) const {
  const std::uint64_t pictureDpi = picture_.dotsPerInch;
  const std::uint64_t step = 2 * std::uint64_t{dotsPerInch_};
  const auto firstInside = [&](std::uint64_t edge) {
    return (2 * edge * pictureDpi + dotsPerInch_ - 1) / step;
  };
  const Span inside{firstInside(scanned), firstInside(std::uint64_t{scanned} + 1)};
  if (inside.first < inside.end) return inside;
  const std::uint64_t middle = (2 * std::uint64_t{scanned} + 1) * pictureDpi / step;
  return {middle, middle + 1};
}

const std::vector<std::uint16_t>& LineSampler::Line(std::uint32_t y) {
  const Span rows = Footprint(y);
  if (rows == lastRows_) return line_;
  lastRows_ = rows;
  SumRows(rows);
  MeanOfColumns(rows.end - rows.first);
  return line_;
}

void LineSampler::SumRows(Span rows) {
  std::fill(sums_.begin(), sums_.end(), 0);
  for (std::uint64_t row = rows.first; row < rows.end; ++row) {
    if (row >= picture_.height) {
      for (std::uint64_t& sum : sums_) sum += kWhite;
      continue;
    }
    const std::uint16_t* const samples = picture_.samples.data() + row * sums_.size();
    for (std::size_t i = 0; i < sums_.size(); ++i) sums_[i] += samples[i];
  }
}

void LineSampler::MeanOfColumns(std::uint64_t rows) {
  const std::uint64_t white = rows * kWhite;
  auto* target = line_.data();
  for (const Span& span : columns_) {
    const std::uint64_t count = rows * (span.end - span.first);
    for (std::uint32_t channel = 0; channel < 3; ++channel) {
      std::uint64_t sum = count / 2;
      for (std::uint64_t column = span.first; column < span.end; ++column) {
        sum += column < picture_.width ? sums_[column * 3 + channel] : white;
      }
      *target++ = static_cast<std::uint16_t>(count == 1 ? sum : sum / count);
    }
  }
}

}  // namespace simulator
