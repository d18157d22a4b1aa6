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

  // Why there is no picture, a sentence; empty where there is one: a whole one, or with `mayBePart`
  // the lines that came.
  std::string Obstacle(bool mayBePart) const;
  // Puts the picture into its place. Returns a note for the user on what is missing of it, a line,
  // or nothing. To be called where nothing is in the way.
  std::string Commit();

 private:
  std::string WhatIsMissing() const;

  const std::string file_;
  const bool mayReplace_;
  std::optional<PictureWriter> writer_;
  std::uint32_t lineBytes_ = 0;
  std::uint32_t lines_ = 0;  // that came
  std::uint32_t height_ = 0;
  bool wasBegun_ = false;  // a set-up came, also one that failed
  bool isDone_ = false;
};

}  // namespace pmscan
