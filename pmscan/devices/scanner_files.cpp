#include "pmscan/devices/scanner_files.h"

#include <algorithm>
#include <filesystem>

#include "pmscan/command_line/console.h"

namespace pmscan {
namespace {

std::filesystem::path Folder() {
  return ProgramFolder() / "profiles";
}

// The folder has the schema of these files as well.
bool IsScannerFile(const std::filesystem::path& file) {
  return file.extension() == ".json" && file.stem() != "schema";
}

}  // namespace

bool IsScannerFileName(const std::string& simulatorName) {
  return simulatorName.ends_with(".json");
}

std::string ScannerFile(const std::string& simulatorName) {
  std::error_code unreadable;
  const std::filesystem::path beside = Folder() / ToWide(simulatorName);
  if (std::filesystem::exists(ToWide(simulatorName), unreadable) ||
      !std::filesystem::exists(beside, unreadable)) {
    return simulatorName;
  }
  return ToUtf8(beside.c_str());
}

std::vector<std::string> ScannerFileNames() {
  std::vector<std::string> names;
  std::error_code unreadable;
  for (const auto& entry : std::filesystem::directory_iterator(Folder(), unreadable)) {
    if (IsScannerFile(entry.path())) names.push_back(ToUtf8(entry.path().filename().c_str()));
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace pmscan
