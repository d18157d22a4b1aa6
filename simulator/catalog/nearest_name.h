#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace simulator {

// The name that was probably meant by `written`; empty when none is near. Case counts half.
std::string_view NearestName(std::string_view written, const std::vector<std::string_view>& names);

// "; did you mean "level"? There are: level, productName".
std::string SuggestName(std::string_view written, const std::vector<std::string_view>& names);

}  // namespace simulator
