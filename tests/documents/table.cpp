#include "tests/documents/table.h"

#include <array>
#include <cstdint>
#include <cstdio>

namespace documents {

std::vector<Table> DeclaredTables() {
  std::vector<Table> tables = WireTables();
  for (const std::vector<Table>& more : {LevelTables(), RecordTables()}) {
    tables.insert(tables.end(), more.begin(), more.end());
  }
  return tables;
}

std::string Code(std::string_view text) {
  return "`" + std::string(text) + "`";
}

std::string Hex(std::string_view bytes) {
  std::vector<std::string> parts;
  for (const char byte : bytes) {
    std::array<char, 3> text{};
    std::snprintf(text.data(), text.size(), "%02X", static_cast<std::uint8_t>(byte));
    parts.emplace_back(text.data());
  }
  return Join(parts, " ");
}

std::string HexNumber(std::uint32_t value) {
  std::array<char, 11> text{};
  std::snprintf(text.data(), text.size(), "0x%02X", value);
  return text.data();
}

std::string Join(const std::vector<std::string>& parts, std::string_view between) {
  std::string text;
  for (const std::string& part : parts) {
    if (part.empty()) continue;
    if (!text.empty()) text.append(between);
    text.append(part);
  }
  return text;
}

}  // namespace documents
