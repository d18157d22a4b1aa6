#include "pmscan/encoders/byte_file.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <sstream>
#include <system_error>
#include <utility>

#include "pmscan/command_line/failure.h"

namespace pmscan {
namespace {

std::span<const std::uint8_t> BytesOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace

ByteFile::ByteFile(const std::filesystem::path& filePath, std::string fileName,
                   std::uint32_t failureCode)
    : path_(filePath),
      name_(std::move(fileName)),
      code_(failureCode),
      stream_(std::make_unique<std::fstream>(
          path_, std::ios::binary | std::ios::in | std::ios::out | std::ios::trunc)) {
  Require("create the file");
}

ByteFile::ByteFile()
    : name_("a picture in memory"),
      code_(kOutputFile),
      stream_(
          std::make_unique<std::stringstream>(std::ios::binary | std::ios::in | std::ios::out)) {}

void ByteFile::Append(std::span<const std::uint8_t> bytes) {
  WriteAt(size_, bytes);
}

void ByteFile::Append(std::string_view text) {
  Append(BytesOf(text));
}

void ByteFile::WriteAt(std::uint64_t place, std::span<const std::uint8_t> bytes) {
  if (place != place_) stream_->seekp(static_cast<std::streamoff>(place));
  stream_->write(reinterpret_cast<const char*>(bytes.data()),
                 static_cast<std::streamsize>(bytes.size()));
  Require("write");
  place_ = place + bytes.size();
  size_ = std::max(size_, place_);
}

void ByteFile::WriteAt(std::uint64_t place, std::string_view text) {
  WriteAt(place, BytesOf(text));
}

std::vector<std::uint8_t> ByteFile::ReadAt(std::uint64_t place, std::size_t count) {
  std::vector<std::uint8_t> bytes(count);
  stream_->seekg(static_cast<std::streamoff>(place));
  stream_->read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(count));
  // What is written next needs a place to be sought first.
  stream_->seekp(0);
  place_ = 0;
  Require("read back what was written");
  return bytes;
}

void ByteFile::Close() {
  stream_->flush();
  Require("write");
  stream_.reset();
  if (path_.empty()) return;
  std::error_code reason;
  std::filesystem::resize_file(path_, size_, reason);
  if (reason) throw Failure(code_, name_ + ": cannot write: " + reason.message() + ".");
}

void ByteFile::Require(const char* step) const {
  if (*stream_) return;
  throw Failure(code_,
                name_ + ": cannot " + step + ": " + std::generic_category().message(errno) + ".");
}

void WriteWhole(const std::filesystem::path& path, const std::string& fileName,
                std::string_view contents, std::uint32_t failureCode) {
  auto file = std::make_unique<ByteFile>(path, fileName, failureCode);
  try {
    file->Append(contents);
    file->Close();
  } catch (const Failure&) {
    file.reset();
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
    throw;
  }
}

}  // namespace pmscan
