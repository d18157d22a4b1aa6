#pragma once

#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <system_error>

#include "capture/file/capture_writer.h"
#include "capture/record/recorder.h"

namespace capture {

// A capture that becomes a file while the conversation goes on; its clock starts with it.
class RecordingFile {
 public:
  // `remarks` stand as comments at the file's beginning; of image data the bytes are kept when
  // asked. Replaces a file that is there. Throws std::system_error when it does not open.
  RecordingFile(const std::filesystem::path& path, const std::string& remarks, bool keepsImageData);
  RecordingFile(const RecordingFile&) = delete;
  RecordingFile& operator=(const RecordingFile&) = delete;

  Recorder& Entries() { return recorder_; }

  // False once the file did not take something.
  bool IsWhole() const { return !reason_; }
  // Why it did not; none while it is whole.
  const std::error_code& Reason() const { return reason_; }

 private:
  void Check();
  std::uint64_t Microseconds() const;

  const std::chrono::steady_clock::time_point start_;
  std::ofstream stream_;
  std::optional<CaptureWriter> writer_;
  std::error_code reason_;
  Recorder recorder_;
};

}  // namespace capture
