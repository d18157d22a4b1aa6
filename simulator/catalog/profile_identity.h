#pragma once

#include <vector>

#include "simulator/catalog/json_document.h"
#include "simulator/catalog/value_kind.h"
#include "simulator/extended/extended_scanner.h"
#include "simulator/standard/standard_scanner.h"

namespace simulator {

// Override an identity by what a profile says. Areas that it does not mention keep their size in
// inches when the resolution changes that they are counted at. Throw ProfileError.
void ReadIdentity(const JsonNode& node, ExtendedIdentity& identity);
void ReadIdentity(const JsonNode& node, StandardIdentity& identity);

// The keys of either, and of an area.
std::vector<KeyGroup> IdentityKeys();

}  // namespace simulator
