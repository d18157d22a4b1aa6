#pragma once

#include <array>
#include <string_view>

#include "fuzz/conversation.h"

// The words that a scanner or a host may say, beside numbers.
namespace pmddb832::fuzz {

inline constexpr std::array<std::string_view, 14> kLevels{
    "B8", "B7", "B6", "B5", "B4", "B3", "A5", "B9", "B1", "A4", "C5", "B\xF5", "A2", "A6"};

// Of 16 characters as a rule.
inline constexpr std::array<std::string_view, 16> kProductNames{
    "SCANNER XY-1234 ", "SCANNER RV-3000 ",
    "SCANNER QM-43000", "Prospectra936XL ",
    "SCANNER QM-2700 ", "Prospectra900   ",
    "SCANNER RV-5000 ", "Prospectra3100  ",
    "SCANNER RV-3100 ", "Prospectra3140XL",
    "SCANNER RV-7000 ", "RV-700XL        ",
    "SCANNER QM-41000", "ABC",
    "                ", "SCANNER RV-6000 "};

inline constexpr std::array<std::string_view, 8> kModelIds{
    "", "RV3100", "QM6000", "QM2700", "RV7000H", "XY1", "XY34567", "XY345678"};

inline std::string_view Level(const ScannerBlock& scanner) {
  return kLevels[Get(scanner, scanner::kLevel) % kLevels.size()];
}

inline std::string_view ProductName(const ScannerBlock& scanner) {
  return kProductNames[Get(scanner, scanner::kProduct) % kProductNames.size()];
}

inline std::string_view ModelId(const HostBlock& host) {
  return kModelIds[Get(host, host::kModel) % kModelIds.size()];
}

}  // namespace pmddb832::fuzz
