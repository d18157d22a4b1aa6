#pragma once

#include <cstdint>
#include <filesystem>

namespace pmscan {

// A file that grows under a name of its own, and is removed with this object unless it took its
// place before.
class GrowingFile {
 public:
  GrowingFile(const std::filesystem::path& growingPath, const std::filesystem::path& finalPlace)
      : place_(finalPlace), path_(growingPath) {}
  ~GrowingFile();
  GrowingFile(const GrowingFile&) = delete;
  GrowingFile& operator=(const GrowingFile&) = delete;

  const std::filesystem::path& Path() const { return path_; }

  // Replaces what stands in the place, if it may. Nobody has the file open. Returns 0 or the
  // system's error number.
  std::uint32_t TakePlace(bool mayReplace) const;

 private:
  const std::filesystem::path place_;
  const std::filesystem::path path_;
};

}  // namespace pmscan
