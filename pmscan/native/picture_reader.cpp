#include "pmscan/pictures/picture_reader.h"

#include <array>
#include <cerrno>
#include <fstream>
#include <vector>

#include "pmscan/command_line/console.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/file_name.h"
#include "pmscan/native/picture_decoders.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

constexpr std::uint64_t kMostPixels = std::uint64_t{1} << 30;

[[noreturn]] void Refuse(const std::string& file, const char* step, const std::string& reason) {
  throw Failure(kInputFile, file + ": cannot " + step + " it as a picture: " + reason + ".");
}

// What opens is not always a file: a folder does too.
std::vector<char> BytesOf(const std::string& file) {
  std::ifstream stream(PathOf(file), std::ios::binary);
  if (!stream) Refuse(file, "open", SystemWords(static_cast<std::uint32_t>(errno)));
  std::vector<char> bytes;
  std::array<char, 65536> part;
  while (stream.read(part.data(), part.size()), stream.gcount() > 0) {
    bytes.insert(bytes.end(), part.begin(), part.begin() + stream.gcount());
  }
  if (stream.bad()) Refuse(file, "read", SystemWords(static_cast<std::uint32_t>(errno)));
  return bytes;
}

}  // namespace

simulator::Picture ReadPicture(const std::string& file) {
  const std::vector<char> bytes = BytesOf(file);
  try {
    return DecodePicture(
        {{reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}, kMostPixels});
  } catch (const PictureError& reason) {
    Refuse(file, "read", reason.what());
  }
}

}  // namespace pmscan
