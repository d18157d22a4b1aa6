#pragma once

#include <optional>
#include <string>
#include <vector>

#include "pmscan/pictures/picture_writer.h"
#include "pmscan/scan/batch.h"
#include "pmscan/scan/page_names.h"

namespace pmscan {

// Writes pages into picture files: each into one of its own, or all into one.
class PictureStore : public PageStore {
 public:
  // The member `name` of `pictureFile` counts for nothing: the names are `pageNames`.
  PictureStore(PageNames pageNames, PictureFile pictureFile)
      : names_(std::move(pageNames)), file_(std::move(pictureFile)) {}

  RowSink& Begin(std::uint32_t page, std::uint32_t width, std::uint32_t height) override;
  void End(std::uint32_t lines) override;
  void Finish() override;
  std::string FileOf(std::uint32_t page) const override { return names_.Of(page); }
  const std::vector<SavedFile>& Files() const override { return files_; }

 private:
  const PageNames names_;
  PictureFile file_;
  std::optional<PictureWriter> writer_;  // of the file that is open
  std::vector<SavedFile> files_;
};

}  // namespace pmscan
