#include "pmscan/settings/paper_sizes.h"

#include <array>
#include <vector>

#include "pmscan/command_line/named_rows.h"
#include "simulator/catalog/nearest_name.h"

namespace pmscan {
namespace {

constexpr PaperSize Millimetres(std::string_view name, double width, double height) {
  return {name, {width, LengthUnit::kMillimetre}, {height, LengthUnit::kMillimetre}};
}

constexpr PaperSize Inches(std::string_view name, double width, double height) {
  return {name, {width, LengthUnit::kInch}, {height, LengthUnit::kInch}};
}

constexpr std::array kPaperSizes{
    Millimetres("a3", 297, 420),     Millimetres("a4", 210, 297),   Millimetres("a5", 148, 210),
    Millimetres("a6", 105, 148),     Millimetres("b4", 257, 364),   Millimetres("b5", 182, 257),
    Inches("letter", 8.5, 11),       Inches("legal", 8.5, 14),      Inches("ledger", 11, 17),
    Inches("executive", 7.25, 10.5), Inches("statement", 5.5, 8.5),
};

}  // namespace

const PaperSize* FindPaperSize(std::string_view name) {
  std::string lower(name);
  for (char& letter : lower) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return FindByName(kPaperSizes, lower);
}

std::string PaperNames() {
  return NamesOf(kPaperSizes);
}

std::string_view NearestPaperName(std::string_view name) {
  std::vector<std::string_view> names;
  names.reserve(kPaperSizes.size());
  for (const PaperSize& size : kPaperSizes) names.push_back(size.name);
  return simulator::NearestName(name, names);
}

}  // namespace pmscan
