#include "pmscan/pictures/picture_store.h"

namespace pmscan {

RowSink& PictureStore::Begin(std::uint32_t page, std::uint32_t width, std::uint32_t height) {
  if (!writer_) {
    file_.name = names_.Of(page);
    writer_.emplace(file_);
  }
  writer_->BeginPage(width, height);
  return *writer_;
}

void PictureStore::End(std::uint32_t lines) {
  writer_->EndPage(lines > 0);
  if (names_.AreNumbered()) Finish();
}

void PictureStore::Finish() {
  if (writer_ && writer_->HasPages()) files_.push_back({file_.name, writer_->Commit()});
  writer_.reset();
}

}  // namespace pmscan
