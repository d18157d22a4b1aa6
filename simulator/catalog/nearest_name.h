#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace simulator {

// The name that was probably meant by `written`; empty when none is near. Case counts half.
std::string_view NearestName(std::string_view written, const std::vector<std::string_view>& names);

// Whether they are the same but for the case of their letters.
bool IsSameName(std::string_view one, std::string_view other);

// Whether the text begins with the name, but for the case of its letters.
bool BeginsWithName(std::string_view text, std::string_view name);

// "; did you mean "level"? There are: level, productName"; of more than a dozen names only the one
// that was probably meant, and nothing when none was.
std::string SuggestName(std::string_view written, const std::vector<std::string_view>& names);

}  // namespace simulator
