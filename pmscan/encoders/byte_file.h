#pragma once

#include <cstdint>
#include <filesystem>
#include <istream>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace pmscan {

// A file that is written from front to back, with places that are filled in later; on the disk or
// in memory. Everything throws Failure(kOutputFile) that names the file.
class ByteFile {
 public:
  // Makes the file, or empties it. `fileName` is its name for messages.
  ByteFile(const std::filesystem::path& filePath, std::string fileName);
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
  std::unique_ptr<std::iostream> stream_;
  std::uint64_t place_ = 0;  // where the stream would write
  std::uint64_t size_ = 0;
};

}  // namespace pmscan
