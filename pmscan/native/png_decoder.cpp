#include <png.h>

#include <algorithm>
#include <vector>

#include "pmscan/native/picture_decoders.h"

namespace pmscan {
namespace {

using Bytes = std::span<const std::uint8_t>;

// The library's frames own nothing: what it allocated goes with the reader.
[[noreturn]] void Refuse(png_structp /*png*/, png_const_charp reason) {
  throw PictureError(reason);
}
void Ignore(png_structp /*png*/, png_const_charp /*warning*/) {}

void Take(png_structp png, png_bytep to, std::size_t count) {
  Bytes& rest = *static_cast<Bytes*>(png_get_io_ptr(png));
  if (rest.size() < count) throw PictureError(kFileEnds);
  std::copy_n(rest.begin(), count, to);
  rest = rest.subspan(count);
}

class PngReader {
 public:
  explicit PngReader(Bytes file)
      : rest_(file),
        png_(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, &Refuse, &Ignore)),
        info_(png_create_info_struct(png_)) {
    png_set_read_fn(png_, &rest_, &Take);
  }
  ~PngReader() { png_destroy_read_struct(&png_, &info_, nullptr); }
  PngReader(const PngReader&) = delete;
  PngReader& operator=(const PngReader&) = delete;

  simulator::Picture Read(const PictureSource& source);

 private:
  double DotsPerInch() const;
  bool IsDeep() const;
  void MakeDeep();
  void MakeShallow();
  void ReadRows(std::uint8_t* to);

  Bytes rest_;
  png_structp png_;
  png_infop info_;
};

double PngReader::DotsPerInch() const {
  constexpr double kMetersPerInch = 0.0254;
  png_uint_32 horizontal = 0;
  png_uint_32 vertical = 0;
  int unit = PNG_RESOLUTION_UNKNOWN;
  png_get_pHYs(png_, info_, &horizontal, &vertical, &unit);
  return unit == PNG_RESOLUTION_METER ? horizontal * kMetersPerInch : 0;
}

bool PngReader::IsDeep() const {
  return png_get_bit_depth(png_, info_) == 16 && png_get_valid(png_, info_, PNG_INFO_tRNS) == 0 &&
         (png_get_color_type(png_, info_) & PNG_COLOR_MASK_ALPHA) == 0;
}

// Three samples of 16 bits, in the order of this machine's bytes.
void PngReader::MakeDeep() {
  png_set_swap(png_);
  png_set_gray_to_rgb(png_);
}

// Blue, green, red and opacity. Of deep samples the high byte counts.
void PngReader::MakeShallow() {
  png_set_expand(png_);
  png_set_strip_16(png_);
  png_set_gray_to_rgb(png_);
  png_set_add_alpha(png_, 0xFF, PNG_FILLER_AFTER);
  png_set_bgr(png_);
}

void PngReader::ReadRows(std::uint8_t* to) {
  png_set_interlace_handling(png_);
  png_read_update_info(png_, info_);
  std::vector<png_bytep> rows(png_get_image_height(png_, info_));
  for (png_bytep& row : rows) {
    row = to;
    to += png_get_rowbytes(png_, info_);
  }
  png_read_image(png_, rows.data());
}

simulator::Picture PngReader::Read(const PictureSource& source) {
  png_read_info(png_, info_);
  const std::uint32_t width = png_get_image_width(png_, info_);
  const std::uint32_t height = png_get_image_height(png_, info_);
  simulator::Picture picture = BeginPicture(width, height, DotsPerInch(), source);
  const std::size_t pixels = std::size_t{width} * height;
  if (IsDeep()) {
    MakeDeep();
    picture.samples.resize(pixels * 3);
    ReadRows(reinterpret_cast<std::uint8_t*>(picture.samples.data()));
  } else {
    MakeShallow();
    std::vector<std::uint8_t> bytes(pixels * 4);
    ReadRows(bytes.data());
    AddPixels(bytes, picture);
  }
  return picture;
}

}  // namespace

simulator::Picture DecodePng(const PictureSource& source) {
  return PngReader(source.file).Read(source);
}

}  // namespace pmscan
