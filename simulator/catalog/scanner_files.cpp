#include "simulator/catalog/scanner_files.h"

#include <algorithm>

#include "simulator/catalog/file_names.h"
#include "simulator/catalog/nearest_name.h"

namespace simulator {
namespace {

// The folder has the schema of these files as well.
bool IsScannerFile(const std::filesystem::path& file) {
  return file.extension() == ".json" && file.stem() != "schema";
}

}  // namespace

bool IsScannerFileName(const std::string& name) {
  return name.ends_with(".json");
}

std::string FindScannerFile(const std::string& name, const std::filesystem::path& folder) {
  const std::filesystem::path beside = folder / PathOf(name);
  std::error_code unreadable;
  if (std::filesystem::exists(PathOf(name), unreadable) ||
      !std::filesystem::exists(beside, unreadable)) {
    return name;
  }
  return NameOf(beside);
}

std::string SuggestScannerFile(const std::string& name, const std::filesystem::path& folder) {
  const std::filesystem::path around = PathOf(name).parent_path();
  std::vector<std::string> known = ScannerFileNames(folder);
  for (const std::string& file : ScannerFileNames(around.empty() ? "." : around)) {
    known.push_back(NameOf(around / PathOf(file)));
  }
  const std::string_view meant = NearestName(name, {known.begin(), known.end()});
  return meant.empty() ? "" : "; did you mean \"" + std::string(meant) + "\"?";
}

std::vector<std::string> ScannerFileNames(const std::filesystem::path& folder) {
  std::vector<std::string> names;
  std::error_code unreadable;
  for (const auto& entry : std::filesystem::directory_iterator(folder, unreadable)) {
    if (IsScannerFile(entry.path())) names.push_back(NameOf(entry.path().filename()));
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace simulator
