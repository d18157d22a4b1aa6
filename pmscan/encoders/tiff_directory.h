#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "pmscan/encoders/page_encoder.h"

namespace pmscan {

// A directory of a TIFF file with the low byte first, also as EXIF has it. The entries are added in
// the order of their tags.
class TiffDirectory {
 public:
  void AddShorts(std::uint16_t tag, const std::vector<std::uint16_t>& values);
  void AddLongs(std::uint16_t tag, const std::vector<std::uint32_t>& values);
  void AddWhole(std::uint16_t tag, std::uint32_t value);  // as a fraction
  void AddText(std::uint16_t tag, const std::string& text);

  // Scanner, software and date have tags of their own.
  void AddScanner(const PictureOrigin& origin);
  void AddSoftwareAndDate(const PictureOrigin& origin);

  // The bytes of the directory at an even place of the file, with its values behind it. No
  // directory follows: the last four bytes of its LinkOffset() are 0.
  std::vector<std::uint8_t> Bytes(std::uint32_t place) const;

  // Where, from its beginning, it tells the place of the next directory.
  std::uint32_t LinkOffset() const;

 private:
  struct Entry {
    std::uint16_t tag = 0;
    std::uint16_t type = 0;
    std::uint32_t count = 0;
    std::vector<std::uint8_t> value;
  };

  std::vector<Entry> entries_;
};

// The eight bytes before a directory that stands behind them.
std::vector<std::uint8_t> TiffHeader();

}  // namespace pmscan
