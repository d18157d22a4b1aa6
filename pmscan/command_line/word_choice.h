#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pmscan {

// "did you mean "grey"?" with the one of the names that is near to the word; empty when none is.
std::string DidYouMean(std::string_view word, const std::vector<std::string_view>& names);

// There is no such word for the option, which has a list of its words: throws Failure(kUsage) with
// them, and with the one that was probably meant. `option` is its name without the dashes.
[[noreturn]] void RefuseWord(std::string_view option, const std::string& word);

}  // namespace pmscan
