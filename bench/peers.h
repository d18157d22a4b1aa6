#pragma once

#include <cstddef>
#include <cstdint>

// The row jobs as a user of other libraries would do them, in one thread.
namespace pmddb832::bench {

using RowJob = void (*)(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);

namespace libyuv_rows {

void SwapBytes(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);
void Reduce(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);
void ReduceSwapped(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);

}  // namespace libyuv_rows

namespace opencv_rows {

void Invert(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);
void PreviewGrey(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);
void SwapBytes(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);
void SwapSamples(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);
void Reduce(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);
void ReduceSwapped(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);

}  // namespace opencv_rows
}  // namespace pmddb832::bench
