#pragma once

#include <filesystem>
#include <string>

namespace pmscan {

// The path of a file whose name is in UTF-8, and a path's name in UTF-8.
inline std::filesystem::path PathOf(const std::string& fileName) {
  return std::u8string(fileName.begin(), fileName.end());
}
inline std::string Utf8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

// Why the file is not written.
inline std::string IsThereAlready(const std::string& fileName) {
  return fileName + " is there already; --overwrite replaces it.";
}

}  // namespace pmscan
