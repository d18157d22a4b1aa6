#define WIN32_LEAN_AND_MEAN
#include "pmscan/scan/growing_file.h"

#include <windows.h>

#include <array>
#include <fstream>

namespace pmscan {
namespace {

constexpr std::streamoff kBitmapSizeOffset = 2;

}  // namespace

GrowingFile::~GrowingFile() {
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}

std::uint32_t GrowingFile::TakePlace(bool mayReplace) const {
  const DWORD how = MOVEFILE_WRITE_THROUGH | (mayReplace ? MOVEFILE_REPLACE_EXISTING : 0);
  return MoveFileExW(path_.c_str(), place_.c_str(), how) != 0 ? ERROR_SUCCESS : GetLastError();
}

void GrowingFile::CorrectBitmapSize() const {
  const std::uint64_t bytes = Bytes();
  std::array<char, 4> size{};
  for (std::size_t i = 0; i < size.size(); ++i) size[i] = static_cast<char>(bytes >> (8 * i));
  std::fstream file(path_, std::ios::in | std::ios::out | std::ios::binary);
  file.seekp(kBitmapSizeOffset);
  file.write(size.data(), size.size());
}

std::uint64_t GrowingFile::Bytes() const {
  std::error_code ignored;
  return std::filesystem::file_size(path_, ignored);
}

}  // namespace pmscan
