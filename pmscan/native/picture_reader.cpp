#include "pmscan/pictures/picture_reader.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <vector>

#include "pmscan/command_line/console.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/file_name.h"
#include "pmscan/native/picture_decoders.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

constexpr std::uint64_t kMostPixels = std::uint64_t{1} << 30;

std::vector<char> BytesOf(const std::string& file) {
  std::ifstream stream(PathOf(file), std::ios::binary);
  if (!stream) {
    const auto error = static_cast<std::uint32_t>(errno);
    throw Failure(kInputFile, file + ": cannot open it as a picture: " + SystemWords(error) + ".");
  }
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace

simulator::Picture ReadPicture(const std::string& file) {
  const std::vector<char> bytes = BytesOf(file);
  try {
    return DecodePicture(
        {{reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}, kMostPixels});
  } catch (const PictureError& reason) {
    throw Failure(kInputFile, file + ": cannot read it as a picture: " + reason.what() + ".");
  }
}

}  // namespace pmscan
