#include "capture/record/recording_file.h"

#include <cerrno>

namespace capture {

RecordingFile::RecordingFile(const std::filesystem::path& path, const std::string& remarks,
                             bool keepsImageData)
    : start_(std::chrono::steady_clock::now()),
      stream_(path, std::ios::binary),
      recorder_(
          [this](const Entry& entry) {
            writer_->Add(entry);
            Check();
          },
          [this] { return Microseconds(); }, keepsImageData) {
  if (!stream_) throw std::system_error(errno, std::generic_category());
  writer_.emplace(stream_, remarks);
  Check();
}

// The system's number is that of the write that failed, before anything else is called.
void RecordingFile::Check() {
  if (reason_ || writer_->IsGood()) return;
  reason_.assign(errno == 0 ? EIO : errno, std::generic_category());
}

std::uint64_t RecordingFile::Microseconds() const {
  using std::chrono::microseconds;
  const auto passed = std::chrono::steady_clock::now() - start_;
  return static_cast<std::uint64_t>(std::chrono::duration_cast<microseconds>(passed).count());
}

}  // namespace capture
