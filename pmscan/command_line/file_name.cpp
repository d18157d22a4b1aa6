#include "pmscan/command_line/file_name.h"

#include <system_error>

namespace pmscan {
namespace {

namespace fs = std::filesystem;

constexpr int kMostLinks = 40;  // behind each other

bool IsLink(const fs::path& path) {
  std::error_code ignored;
  return fs::is_symlink(path, ignored);
}

fs::path WholePlace(const std::string& fileName) {
  std::error_code ignored;
  return fs::weakly_canonical(fs::absolute(PlaceOf(fileName), ignored), ignored);
}

}  // namespace

fs::path PlaceOf(const std::string& fileName) {
  fs::path place = PathOf(fileName);
  std::error_code ignored;
  for (int links = 0; links < kMostLinks && IsLink(place); ++links) {
    place = place.parent_path() / fs::read_symlink(place, ignored);
  }
  return place;
}

bool IsSameFile(const std::string& one, const std::string& other) {
  std::error_code ignored;
  return fs::equivalent(PathOf(one), PathOf(other), ignored) ||
         WholePlace(one) == WholePlace(other);
}

std::string StandingInPlace(const std::string& fileName) {
  const fs::path place = PlaceOf(fileName);
  std::error_code ignored;
  const fs::file_status status = fs::status(place, ignored);
  if (fs::is_directory(status)) return fileName + " is a folder";
  if (IsLink(place)) return fileName + " is a link that leads in a circle";
  if (!fs::exists(status) || fs::is_regular_file(status)) return {};
  return fileName + " is no regular file";
}

}  // namespace pmscan
