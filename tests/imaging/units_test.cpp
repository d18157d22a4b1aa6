#include "imaging/units.h"

#include <doctest/doctest.h>
#include <xmmintrin.h>

#include <cmath>
#include <cstring>
#include <initializer_list>
#include <limits>

namespace pmddb832::tests {
namespace {

using Scanutil::CalcResolution;
using Scanutil::InchesToPixelsORWIA;
using Scanutil::PixelsToInchesORWIA;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kTwoToThe31 = 2147483648.0;
constexpr double kTwoToThe32 = 4294967296.0;
constexpr double kTwoToThe63 = 9223372036854775808.0;

}  // namespace

TEST_CASE("a length becomes pixels, rounded half up") {
  CHECK(InchesToPixelsORWIA(850, 300) == 2550);
  CHECK(InchesToPixelsORWIA(1, 50) == 1);
  CHECK(InchesToPixelsORWIA(1, 49) == 0);
  CHECK(InchesToPixelsORWIA(0, 300) == 0);
  CHECK(InchesToPixelsORWIA(850, 0) == 0);
}

TEST_CASE("fractions of a length count") {
  CHECK(InchesToPixelsORWIA(0.4999, 100) == 0);
  CHECK(InchesToPixelsORWIA(0.5, 100) == 1);
  CHECK(InchesToPixelsORWIA(8.5, 300) == 26);
}

TEST_CASE("negative lengths are truncated toward zero behind the rounding") {
  CHECK(InchesToPixelsORWIA(-1, 100) == 0);
  CHECK(InchesToPixelsORWIA(-1, 149) == 0);
  CHECK(InchesToPixelsORWIA(-1, 150) == -1);
  CHECK(InchesToPixelsORWIA(-2, 100) == -1);
  CHECK(InchesToPixelsORWIA(-100, 300) == -299);
}

TEST_CASE("resolution and zoom as factors give their product in percent") {
  CHECK(InchesToPixelsORWIA(300, 100) == 300);
  CHECK(InchesToPixelsORWIA(300, 33) == 99);
  CHECK(InchesToPixelsORWIA(65535, 65535) == 42948362);
}

TEST_CASE("of a result beyond 32 bits the low 32 are kept, signed") {
  CHECK(InchesToPixelsORWIA(kTwoToThe31 - 1, 100) == 2147483647);
  CHECK(InchesToPixelsORWIA(kTwoToThe31, 100) == std::numeric_limits<std::int32_t>::min());
  CHECK(InchesToPixelsORWIA(kTwoToThe32 + 7, 100) == 7);
  CHECK(InchesToPixelsORWIA(-kTwoToThe32 - 7, 100) == -6);
}

TEST_CASE("a result beyond 64 bits, or none at all, gives 0") {
  for (const double length : {kTwoToThe63, -kTwoToThe63, 1e300, -1e300, kInfinity, -kInfinity,
                              std::numeric_limits<double>::quiet_NaN()}) {
    CHECK(InchesToPixelsORWIA(length, 100) == 0);
  }
  CHECK(InchesToPixelsORWIA(kInfinity, 0) == 0);
  CHECK(InchesToPixelsORWIA(1e308, 1e308) == 0);
}

// What a host may have set in the processor's control word: everything unmasked, each of the four
// roundings, results flushed to zero, small operands taken for zero.
TEST_CASE("conversions raise nothing, and are the same in every mode of the processor") {
  constexpr unsigned kUsual = 0x1F80;
  constexpr unsigned kModes[] = {0x0000, 0x2000, 0x4000, 0x6000, 0x8000, 0x0040, 0xE040, 0x7F80};
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  constexpr double kSignal = std::numeric_limits<double>::signaling_NaN();
  constexpr double kNumbers[] = {0,         -0.0,       1,    49.5,   850,   1e-310,
                                 -1e-310,   5e-324,     0.07, 333.33, 1e300, -1e300,
                                 kInfinity, -kInfinity, kNan, kSignal};
  for (const unsigned mode : kModes) {
    for (const double a : kNumbers) {
      for (const double b : kNumbers) {
        const std::int32_t pixels = InchesToPixelsORWIA(a, b);
        const double length = PixelsToInchesORWIA(a, b);
        _mm_setcsr(mode);
        const std::int32_t pixelsInMode = InchesToPixelsORWIA(a, b);
        const volatile double lengthInMode = PixelsToInchesORWIA(a, b);
        const unsigned left = _mm_getcsr();
        _mm_setcsr(kUsual);
        CAPTURE(mode);
        CHECK(left == mode);
        CHECK(pixelsInMode == pixels);
        const double same = lengthInMode;
        CHECK(std::memcmp(&same, &length, sizeof same) == 0);
      }
    }
  }
}

TEST_CASE("pixels become a length, not rounded") {
  CHECK(PixelsToInchesORWIA(2550, 300) == 850.0);
  CHECK(PixelsToInchesORWIA(1, 3) == 100.0 / 3.0);
  CHECK(PixelsToInchesORWIA(-3, 300) == -1.0);
  CHECK(PixelsToInchesORWIA(0, 300) == 0.0);
}

TEST_CASE("pixels are multiplied before they are divided") {
  CHECK(PixelsToInchesORWIA(5103, 1200) == 510300.0 / 1200.0);
  CHECK(PixelsToInchesORWIA(1e307, 1000) == kInfinity);
}

TEST_CASE("a resolution of 0 follows the rules of floating point") {
  CHECK(PixelsToInchesORWIA(1, 0.0) == kInfinity);
  CHECK(PixelsToInchesORWIA(-1, 0.0) == -kInfinity);
  CHECK(std::isnan(PixelsToInchesORWIA(0, 0.0)));
}

TEST_CASE("a product of resolution factors is divided by 100, rounded half up") {
  CHECK(CalcResolution(300, 150) == 450);
  CHECK(CalcResolution(1, 49) == 0);
  CHECK(CalcResolution(1, 50) == 1);
  CHECK(CalcResolution(0, 65535) == 0);
  CHECK(CalcResolution(1, 149) == 1);
  CHECK(CalcResolution(1, 150) == 2);
}

TEST_CASE("of a scaled product the low 16 bits are kept") {
  CHECK(CalcResolution(65535, 65535) == 22282);
  CHECK(CalcResolution(65535, 100) == 65535);
  CHECK(CalcResolution(65535, 101) == 654);
  CHECK(CalcResolution(25600, 256) == 0);
}

}  // namespace pmddb832::tests
