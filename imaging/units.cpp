#include "imaging/units.h"

#include <xmmintrin.h>

#include "platform/trace.h"

namespace pmddb832::Scanutil {
namespace {

constexpr double kTwoToThe63 = 9223372036854775808.0;

// While it lives, the processor rounds to nearest, flushes nothing to zero and raises nothing,
// whatever the host has set. What it computes with passes through volatile variables, so that
// nothing is computed before or behind.
class UsualArithmetic {
 public:
  UsualArithmetic() : hostControl_(_mm_getcsr()) { _mm_setcsr(kAllMaskedToNearest); }
  ~UsualArithmetic() { _mm_setcsr(hostControl_); }
  UsualArithmetic(const UsualArithmetic&) = delete;
  UsualArithmetic& operator=(const UsualArithmetic&) = delete;

 private:
  static constexpr unsigned kAllMaskedToNearest = 0x1F80;

  const unsigned hostControl_;
};

std::int32_t LowWordTowardZero(double value) {
  const bool fits = value > -kTwoToThe63 && value < kTwoToThe63;
  return fits ? static_cast<std::int32_t>(static_cast<std::int64_t>(value)) : 0;
}

}  // namespace

std::int32_t InchesToPixelsORWIA(double length, double resolution) {
  const TraceScope trace{"Scanutil::InchesToPixelsORWIA"};
  const UsualArithmetic usual;
  const volatile double factors[] = {length, resolution};
  const volatile std::int32_t pixels = LowWordTowardZero((factors[0] * factors[1] + 50.0) / 100.0);
  return pixels;
}

double PixelsToInchesORWIA(double pixels, double resolution) {
  const TraceScope trace{"Scanutil::PixelsToInchesORWIA"};
  const UsualArithmetic usual;
  const volatile double terms[] = {pixels, resolution};
  const volatile double length = terms[0] * 100.0 / terms[1];
  return length;
}

std::uint16_t CalcResolution(std::uint16_t a, std::uint16_t b) {
  const TraceScope trace{"Scanutil::CalcResolution"};
  const std::uint32_t product = std::uint32_t{a} * b;
  return static_cast<std::uint16_t>((product + 50) / 100);
}

}  // namespace pmddb832::Scanutil
