#include "pmscan/pictures/temporary_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>

#include "pmscan/command_line/console.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

std::filesystem::path TemporaryFolder() {
  const char* const folder = std::getenv("TMPDIR");
  return folder == nullptr || *folder == '\0' ? "/tmp" : folder;
}

}  // namespace

// Without a name nothing is left of it, however the program ends.
TemporaryFile::TemporaryFile() {
  const std::filesystem::path folder = TemporaryFolder();
  std::string name = folder / "pmscan-XXXXXX";
  file_ = mkostemp(name.data(), O_CLOEXEC);
  if (file_ < 0) {
    const std::string reason = SystemWords(static_cast<std::uint32_t>(errno));
    throw Failure(kOutputFile, "There can be no temporary file in " + folder.string() + ": " +
                                   reason + "; TMPDIR names another folder.");
  }
  unlink(name.c_str());
  path_ = "/proc/self/fd/" + std::to_string(file_);
}

TemporaryFile::~TemporaryFile() {
  close(file_);
}

}  // namespace pmscan
