#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

namespace pmscan {

// Texts, each of which is kept once.
class StringTable {
 public:
  // The place of the text, from 0.
  std::size_t PlaceOf(const std::string& text) {
    const auto [entry, isNew] = places_.try_emplace(text, texts_.size());
    if (isNew) texts_.push_back(text);
    return entry->second;
  }

  const std::vector<std::string>& Texts() const { return texts_; }

 private:
  std::unordered_map<std::string, std::size_t> places_;
  std::vector<std::string> texts_;
};

}  // namespace pmscan
