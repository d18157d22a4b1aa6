#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "simulator/catalog/json_document.h"
#include "simulator/faults/fault.h"

namespace simulator {

// The faults of a list in a profile or script. Throws ProfileError.
std::vector<Fault> ReadFaults(const JsonNode& list);

// Reads a fault script, an object with the list under "faults"; the file's name in UTF-8. Throws
// ProfileError.
std::vector<Fault> ReadFaultScript(const std::string& file);

// The keys of a script, of a fault, of its place, and of what it does.
std::vector<std::string_view> FaultScriptKeys();
std::vector<std::string_view> FaultKeys();
std::vector<std::string_view> FaultPlaceKeys();
std::vector<std::string_view> FaultActionKeys();

// What "part" may be.
std::vector<std::string_view> FaultParts();

}  // namespace simulator
