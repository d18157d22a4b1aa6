#pragma once

#include <cstdint>
#include <filesystem>
#include <istream>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "pmscan/report/error_codes.h"

namespace pmscan {

// A file that is written from front to back, with places that are filled in later; on the disk or
// in memory. Everything throws Failure that names the file and tells the system's reason.
class ByteFile {
 public:
  // Makes the file, or empties it. `fileName` is its name for messages, and `failureCode` that of
  // all that it throws.
  ByteFile(const std::filesystem::path& filePath, std::string fileName,
           std::uint32_t failureCode = kOutputFile);
  // In memory.
  ByteFile();

  void Append(std::span<const std::uint8_t> bytes);
  void Append(std::string_view text);

  // Writes from `place` on, which may lie beyond the end.
  void WriteAt(std::uint64_t place, std::span<const std::uint8_t> bytes);
  void WriteAt(std::uint64_t place, std::string_view text);

  // Bytes that are there already, all before the end.
  std::vector<std::uint8_t> ReadAt(std::uint64_t place, std::size_t count);

  // What lies behind is not part of the file.
  void CutTo(std::uint64_t size) { size_ = size; }

  std::uint64_t Size() const { return size_; }
  const std::string& Name() const { return name_; }

  // The file is complete; nothing else may be called. One in memory is gone.
  void Close();

 private:
  void Require(const char* step) const;

  const std::filesystem::path path_;
  const std::string name_;
  const std::uint32_t code_;
  std::unique_ptr<std::iostream> stream_;
  std::uint64_t place_ = 0;  // where the stream would write
  std::uint64_t size_ = 0;
};

// Makes the file, or replaces what is in it; one that could not be written to its end is removed.
// Throws as ByteFile does.
void WriteWhole(const std::filesystem::path& path, const std::string& fileName,
                std::string_view contents, std::uint32_t failureCode);

}  // namespace pmscan
