#define WIN32_LEAN_AND_MEAN
#include "pmscan/pictures/temporary_file.h"

#include <windows.h>
// windows.h comes first: the other headers build on it.
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <string>
#include <system_error>

#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/file_name.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

constexpr int kMostNames = 1000;

std::filesystem::path TemporaryFolder() {
  std::array<wchar_t, MAX_PATH + 1> folder{};
  GetTempPathW(static_cast<DWORD>(folder.size()), folder.data());
  return folder.data();
}

std::filesystem::path NameIn(const std::filesystem::path& folder, int number) {
  return folder / ("pmscan-" + std::to_string(GetCurrentProcessId()) + "-" +
                   std::to_string(number) + ".tmp");
}

// Makes the file, which must not be there, and lets it be opened once more. -1 when it does not.
int MakeNew(const std::filesystem::path& path) {
  constexpr int kHow = _O_CREAT | _O_EXCL | _O_RDWR | _O_BINARY | _O_NOINHERIT;
  return _wsopen(path.c_str(), kHow, _SH_DENYNO, _S_IREAD | _S_IWRITE);
}

}  // namespace

// It lies in a folder of the user's own, and nobody can remove it as long as it is open here.
TemporaryFile::TemporaryFile() {
  const std::filesystem::path folder = TemporaryFolder();
  for (int number = 0; number < kMostNames && file_ < 0; ++number) {
    path_ = NameIn(folder, number);
    file_ = MakeNew(path_);
    if (file_ < 0 && errno != EEXIST) break;
  }
  if (file_ >= 0) return;
  throw Failure(kOutputFile, "There can be no temporary file in " + Utf8(folder) + ": " +
                                 std::generic_category().message(errno) +
                                 "; TMP names another folder.");
}

TemporaryFile::~TemporaryFile() {
  _close(file_);
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}

}  // namespace pmscan
