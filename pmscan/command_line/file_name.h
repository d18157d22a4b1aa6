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

// Where the file of that name lies or will lie: what a symbolic link leads to, also where nothing
// is there yet.
std::filesystem::path PlaceOf(const std::string& fileName);

// Whether both names lead to the same file, which need not be there.
bool IsSameFile(const std::string& one, const std::string& other);

// What stands at that name and cannot be replaced by a file, as a sentence without its full stop:
// "out.png is a folder". Empty when nothing does.
std::string StandingInPlace(const std::string& fileName);

// Why the file is not written.
inline std::string IsThereAlready(const std::string& fileName) {
  return fileName + " is there already; --overwrite replaces it.";
}

}  // namespace pmscan
