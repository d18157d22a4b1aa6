#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "simulator/catalog/json_document.h"
#include "simulator/catalog/value_kind.h"
#include "simulator/faults/fault.h"

namespace simulator {

// The faults of a list in a profile or script. Throws ProfileError.
std::vector<Fault> ReadFaults(const JsonNode& list);

// Reads a fault script, an object with the list under "faults"; the file's name in UTF-8. Throws
// ProfileError.
std::vector<Fault> ReadFaultScript(const std::string& file);

// The kind of such a list, and the sentence on it.
inline constexpr ValueKind kFaultObject = Object(R"({"$ref": "#/$defs/fault"})");
inline constexpr ValueKind kFaultList{
    ValueKind::Shape::kList, "objects, see below", {}, nullptr, 0, 0, nullptr, &kFaultObject};
constexpr std::string_view kFaultListSentence =
    "What goes wrong on the cable; of several at one place the first strikes.";

// The keys of a script, of a fault, of its place, and of what it does.
std::vector<KeyGroup> FaultKeys();

}  // namespace simulator
