#pragma once

#include <string>

namespace pmddb832::tests {

// The commands, fields and names that the module and the tools know, as the tables of the
// Wireshark dissector: Lua source, lines that end with a line feed.
std::string DissectorTables();

}  // namespace pmddb832::tests
