#define WIN32_LEAN_AND_MEAN
#include "pmscan/pictures/growing_file.h"

#include <windows.h>

namespace pmscan {
GrowingFile::~GrowingFile() {
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}

std::uint32_t GrowingFile::TakePlace(bool mayReplace) const {
  const DWORD how = MOVEFILE_WRITE_THROUGH | (mayReplace ? MOVEFILE_REPLACE_EXISTING : 0);
  return MoveFileExW(path_.c_str(), place_.c_str(), how) != 0 ? ERROR_SUCCESS : GetLastError();
}

}  // namespace pmscan
