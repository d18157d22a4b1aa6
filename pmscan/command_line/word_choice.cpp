#include "pmscan/command_line/word_choice.h"

#include <algorithm>

#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/option_table.h"
#include "pmscan/report/error_codes.h"
#include "simulator/catalog/nearest_name.h"

namespace pmscan {
namespace {

// The words of "lineart, grey".
std::vector<std::string_view> WordsIn(std::string_view choices) {
  std::vector<std::string_view> words;
  for (std::size_t end = 0; end != std::string_view::npos; choices.remove_prefix(end + 2)) {
    end = choices.find(", ");
    words.push_back(choices.substr(0, end));
    if (end == std::string_view::npos) break;
  }
  return words;
}

}  // namespace

std::string DidYouMean(std::string_view word, const std::vector<std::string_view>& names) {
  const std::string_view meant = simulator::NearestName(word, names);
  return meant.empty() ? "" : "did you mean \"" + std::string(meant) + "\"?";
}

void RefuseWord(std::string_view option, const std::string& word) {
  const auto* const row =
      std::find_if(kOptions.begin(), kOptions.end(),
                   [&](const OptionRow& each) { return LongName(each).substr(2) == option; });
  const std::string choices = row->choices();
  const std::string question = DidYouMean(word, WordsIn(choices));
  const std::string name(option);
  throw Failure(kUsage, "There is no " + name + " \"" + word + "\"; " + question +
                            (question.empty() ? "" : " ") + "--" + name + " can be: " + choices +
                            ".");
}

}  // namespace pmscan
