#include "bench/peers.h"

#include <libyuv.h>

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <vector>

namespace pmddb832::bench {

namespace libyuv_rows {

void SwapBytes(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  libyuv::RAWToRGB24(from, 0, to, 0, static_cast<int>(pixels), 1);
}

void Reduce(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  constexpr int kFrom16Bits = 256;
  const auto* samples = reinterpret_cast<const std::uint16_t*>(from);
  libyuv::Convert16To8Plane(samples, 0, to, 0, kFrom16Bits, static_cast<int>(3 * pixels), 1);
}

void ReduceSwapped(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  static std::vector<std::uint8_t> reduced;
  reduced.resize(3 * pixels);
  Reduce(from, reduced.data(), pixels);
  SwapBytes(reduced.data(), to, pixels);
}

}  // namespace libyuv_rows

namespace opencv_rows {
namespace {

// A view of one row; OpenCV has no read-only one.
cv::Mat View(const std::uint8_t* row, std::size_t pixels, int type) {
  return {1, static_cast<int>(pixels), type, const_cast<std::uint8_t*>(row)};
}

cv::Mat PreviewTable() {
  cv::Mat table(1, 256, CV_8U);
  for (int k = 0; k < 256; ++k) table.at<std::uint8_t>(k) = static_cast<std::uint8_t>(k - k / 11);
  table.at<std::uint8_t>(255) = 234;
  return table;
}

}  // namespace

void Invert(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  cv::bitwise_not(View(from, pixels, CV_8U), View(to, pixels, CV_8U));
}

void PreviewGrey(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  static const cv::Mat table = PreviewTable();
  cv::LUT(View(from, pixels, CV_8U), table, View(to, pixels, CV_8U));
}

void SwapBytes(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  cv::cvtColor(View(from, pixels, CV_8UC3), View(to, pixels, CV_8UC3), cv::COLOR_BGR2RGB);
}

void SwapSamples(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  cv::cvtColor(View(from, pixels, CV_16UC3), View(to, pixels, CV_16UC3), cv::COLOR_BGR2RGB);
}

void Reduce(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  cv::extractChannel(View(from, 3 * pixels, CV_8UC2), View(to, 3 * pixels, CV_8U), 1);
}

void ReduceSwapped(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  const cv::Mat source = View(from, pixels, CV_8UC(6));
  cv::Mat destination = View(to, pixels, CV_8UC3);
  constexpr int kHighBytesReversed[]{5, 0, 3, 1, 1, 2};
  cv::mixChannels(&source, 1, &destination, 1, kHighBytesReversed, 3);
}

}  // namespace opencv_rows
}  // namespace pmddb832::bench
