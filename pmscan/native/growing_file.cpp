#include "pmscan/pictures/growing_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace pmscan {
namespace {

// The name of the growing file itself goes with the object.
std::uint32_t TakeFreePlace(const std::filesystem::path& path, const std::filesystem::path& place) {
  const int result = renameat2(AT_FDCWD, path.c_str(), AT_FDCWD, place.c_str(), RENAME_NOREPLACE);
  if (result == 0) return 0;
  // Not every file system can rename in that way; those can give a file a second name.
  if (errno == EINVAL && link(path.c_str(), place.c_str()) == 0) return 0;
  return static_cast<std::uint32_t>(errno);
}

}  // namespace

GrowingFile::~GrowingFile() {
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}

std::uint32_t GrowingFile::TakePlace(bool mayReplace) const {
  if (!mayReplace) return TakeFreePlace(path_, place_);
  return std::rename(path_.c_str(), place_.c_str()) == 0 ? 0 : static_cast<std::uint32_t>(errno);
}

}  // namespace pmscan
