#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace documents {

using Row = std::vector<std::string>;

// A table that the code declares, as a document shows it. The first cell of a row names it.
struct Table {
  std::string name;
  Row header;
  std::vector<Row> rows;
};

// Every table, made of the declarations that the module is built of.
std::vector<Table> DeclaredTables();

// In the order of DeclaredTables.
std::vector<Table> WireTables();
std::vector<Table> LevelTables();
std::vector<Table> RecordTables();

// "`text`"
std::string Code(std::string_view text);
// "1C 46", "0x13".
std::string Hex(std::string_view bytes);
std::string HexNumber(std::uint32_t value);
// The parts that are not empty, with the text between them.
std::string Join(const std::vector<std::string>& parts, std::string_view between);

}  // namespace documents
