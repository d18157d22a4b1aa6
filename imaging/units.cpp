#include "imaging/units.h"

#include "platform/trace.h"

namespace pmddb832::Scanutil {
namespace {

constexpr double kTwoToThe63 = 9223372036854775808.0;

std::int32_t LowWordTowardZero(double value) {
  const bool fits = value > -kTwoToThe63 && value < kTwoToThe63;
  return fits ? static_cast<std::int32_t>(static_cast<std::int64_t>(value)) : 0;
}

}  // namespace

std::int32_t InchesToPixelsORWIA(double length, double resolution) {
  const TraceScope trace{"Scanutil::InchesToPixelsORWIA"};
  return LowWordTowardZero((length * resolution + 50.0) / 100.0);
}

double PixelsToInchesORWIA(double pixels, double resolution) {
  const TraceScope trace{"Scanutil::PixelsToInchesORWIA"};
  return pixels * 100.0 / resolution;
}

std::uint16_t CalcResolution(std::uint16_t a, std::uint16_t b) {
  const TraceScope trace{"Scanutil::CalcResolution"};
  const std::uint32_t product = std::uint32_t{a} * b;
  return static_cast<std::uint16_t>((product + 50) / 100);
}

}  // namespace pmddb832::Scanutil
