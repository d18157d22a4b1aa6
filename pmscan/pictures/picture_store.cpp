#include "pmscan/pictures/picture_store.h"

namespace pmscan {

RowSink& PictureStore::Begin(std::uint32_t page, const pmddb832::AcquisitionSetup& setup) {
  if (!writer) {
    file.name = names.Of(page);
    writer.emplace(file);
  }
  writer->BeginPage(setup.widthPixels, setup.heightLines);
  return *writer;
}

void PictureStore::End(std::uint32_t lines) {
  writer->EndPage(lines > 0);
  if (names.AreNumbered()) Finish();
}

void PictureStore::Finish() {
  if (writer && writer->HasPages()) files.push_back({file.name, writer->Commit()});
  writer.reset();
}

}  // namespace pmscan
