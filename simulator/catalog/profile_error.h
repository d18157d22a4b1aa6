#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace simulator {

// A profile or fault script that cannot be used. what() is one sentence for its author that begins
// with file, line and key: "office.json:12: identity.level: expected two characters, got "B"".
class ProfileError : public std::runtime_error {
 public:
  // Line 0: the file as a whole. An empty key: the whole content.
  ProfileError(const std::string& file, std::size_t line, const std::string& key,
               const std::string& sentence)
      : std::runtime_error(file + (line == 0 ? "" : ":" + std::to_string(line)) + ": " +
                           (key.empty() ? "" : key + ": ") + sentence) {}
};

}  // namespace simulator
