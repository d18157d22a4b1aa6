#pragma once

#include <optional>
#include <string>

#include "pmscan/captures/replay.h"
#include "pmscan/pictures/picture_writer.h"

namespace pmscan {

// Writes the first picture of a replay into a file.
class ReplayedPictures final : public PictureTaker {
 public:
  // `pictureFile` in UTF-8; its extension is the format.
  ReplayedPictures(std::string pictureFile, bool mayReplaceFile)
      : file_(std::move(pictureFile)), mayReplace_(mayReplaceFile) {}

  void Begin(const pmddb832::ScannerSettings& settings,
             const std::vector<capture::Value>& arguments,
             const std::vector<capture::Value>& setup) override;
  void TakeBand(const std::vector<std::uint8_t>& rows,
                const std::vector<capture::Value>& band) override;

  // Throws Failure(kUnsupported) when there was no whole picture.
  void Commit();

 private:
  const std::string file_;
  const bool mayReplace_;
  std::optional<PictureWriter> writer_;
  std::uint32_t lineBytes_ = 0;
  bool isDone_ = false;
};

}  // namespace pmscan
