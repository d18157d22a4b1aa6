#pragma once

#include <filesystem>
#include <string>

namespace simulator {

// File names are UTF-8 texts here, whatever the system has.
inline std::filesystem::path PathOf(const std::string& name) {
  return std::filesystem::path(std::u8string(name.begin(), name.end()));
}

inline std::string NameOf(const std::filesystem::path& path) {
  const std::u8string name = path.generic_u8string();
  return {name.begin(), name.end()};
}

}  // namespace simulator
