#pragma once

#include <cstdint>
#include <string>

#include "pmscan/pictures/imaging_component.h"
#include "pmscan/pictures/picture_writer.h"

namespace pmscan {

// A picture file, open to be copied from page by page. Everything throws Failure(kOutputFile).
class PictureCopy {
 public:
  // `name` is that of the file for messages.
  PictureCopy(const ComPointer<IWICImagingFactory>& factory, const wchar_t* path,
              const std::string& name);

  // Writes the first lines of a page, counted from 0, as the next page of `writer`, which writes
  // the same kind of picture.
  void CopyPage(UINT page, std::uint32_t lines, PictureWriter& writer) const;

 private:
  void Require(HRESULT result, const char* step) const;

  const std::string fileName_;
  ComPointer<IWICBitmapDecoder> decoder_;
};

}  // namespace pmscan
