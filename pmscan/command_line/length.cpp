#include "pmscan/command_line/length.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/named_rows.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

constexpr double kMillimetresPerInch = 25.4;

struct UnitRow {
  std::string_view name;
  LengthUnit unit;
  double perInch;  // 0: depends on the resolution
};

constexpr std::array kUnits{
    UnitRow{"in", LengthUnit::kInch, 1.0},
    UnitRow{"mm", LengthUnit::kMillimetre, kMillimetresPerInch},
    UnitRow{"cm", LengthUnit::kCentimetre, kMillimetresPerInch / 10},
    UnitRow{"px", LengthUnit::kPixel, 0.0},
};

[[noreturn]] void RefuseLength(std::string_view text) {
  throw Failure(kUsage, "\"" + std::string(text) +
                            "\" is not a length: write a number and its unit (in, mm, cm or px).");
}

std::string_view WithoutBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

Length ParseLength(std::string_view text) {
  const std::string_view length = WithoutBlanks(text);
  double amount = 0;
  const auto [end, error] = std::from_chars(length.data(), length.data() + length.size(), amount);
  if (error != std::errc() || !std::isfinite(amount) || amount < 0) RefuseLength(text);
  const auto digits = static_cast<std::size_t>(end - length.data());
  const std::string_view unit = WithoutBlanks(length.substr(digits));
  const UnitRow* const row = FindByName(kUnits, unit);
  if (row == nullptr) RefuseLength(text);
  return {amount, row->unit};
}

std::uint32_t ToPixels(const Length& length, std::uint32_t dotsPerInch) {
  double pixels = length.amount;
  for (const UnitRow& row : kUnits) {
    if (row.unit == length.unit && row.perInch > 0) pixels *= dotsPerInch / row.perInch;
  }
  pixels = std::round(pixels);
  if (pixels > std::numeric_limits<std::int32_t>::max()) {
    throw Failure(kUnsupported, "The area is beyond anything that a scanner can address.");
  }
  return static_cast<std::uint32_t>(pixels);
}

std::string FormatSize(double widthInches, double heightInches) {
  std::array<char, 120> text{};
  std::snprintf(text.data(), text.size(), "%.2f x %.2f in (%.1f x %.1f mm)", widthInches,
                heightInches, widthInches * kMillimetresPerInch,
                heightInches * kMillimetresPerInch);
  return text.data();
}

}  // namespace pmscan
