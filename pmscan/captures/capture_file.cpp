#include "pmscan/captures/capture_file.h"

#include <fstream>

#include "capture/file/capture_reader.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/file_name.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {

capture::Capture ReadCaptureFile(const std::string& fileName) {
  std::ifstream stream(PathOf(fileName), std::ios::binary);
  if (!stream) throw Failure(kCaptureUnreadable, fileName + " does not open for reading.");
  try {
    return capture::ReadCapture(stream, fileName);
  } catch (const capture::FormatError& error) {
    throw Failure(kCaptureUnreadable, error.what());
  }
}

void RequireFree(const std::string& fileName, bool mayOverwrite) {
  const std::string standing = StandingInPlace(fileName);
  if (!standing.empty()) throw Failure(kFileUnwritable, standing + ".");
  std::error_code ignored;
  if (mayOverwrite || !std::filesystem::exists(PathOf(fileName), ignored)) return;
  throw Failure(kFileUnwritable, fileName + " is already there; add --overwrite to replace it.");
}

}  // namespace pmscan
