#pragma once

#include <filesystem>

namespace pmscan {

// A new file in the system's folder for temporary files, of this object alone: nobody else may read
// it, and it goes with the object.
class TemporaryFile {
 public:
  // Throws Failure(kOutputFile) that names the folder.
  TemporaryFile();
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  // Opens as often as it is needed.
  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
  int file_ = -1;  // keeps it as long as the object lives
};

}  // namespace pmscan
