#include <array>
#include <cstdio>
#include <vector>

// The library's header needs those of the C library first.
#include <jerror.h>
#include <jpeglib.h>

#include "pmscan/native/picture_decoders.h"

namespace pmscan {
namespace {

// The library's frames own nothing: what it allocated goes with the reader.
[[noreturn]] void Refuse(j_common_ptr jpeg) {
  std::array<char, JMSG_LENGTH_MAX> reason{};
  jpeg->err->format_message(jpeg, reason.data());
  throw PictureError(reason.data());
}

// Left to itself the library takes grey for what is missing.
void Note(j_common_ptr jpeg, int level) {
  if (level < 0 && jpeg->err->msg_code == JWRN_JPEG_EOF) throw PictureError(kFileEnds);
}

class JpegReader {
 public:
  explicit JpegReader(std::span<const std::uint8_t> file) {
    jpeg_.err = jpeg_std_error(&errors_);
    errors_.error_exit = &Refuse;
    errors_.emit_message = &Note;
    jpeg_create_decompress(&jpeg_);
    jpeg_mem_src(&jpeg_, file.data(), file.size());
  }
  ~JpegReader() { jpeg_destroy_decompress(&jpeg_); }
  JpegReader(const JpegReader&) = delete;
  JpegReader& operator=(const JpegReader&) = delete;

  simulator::Picture Read(const PictureSource& source);

 private:
  double DotsPerInch() const;
  void MixInks(std::span<std::uint8_t> pixels) const;

  jpeg_error_mgr errors_{};
  jpeg_decompress_struct jpeg_{};
};

double JpegReader::DotsPerInch() const {
  constexpr int kPerInch = 1;
  constexpr int kPerCentimeter = 2;
  constexpr double kCentimetersPerInch = 2.54;
  if (jpeg_.density_unit == kPerInch) return jpeg_.X_density;
  return jpeg_.density_unit == kPerCentimeter ? jpeg_.X_density * kCentimetersPerInch : 0;
}

// Makes cyan, magenta, yellow and black into blue, green, red and opacity. Some programs store how
// much ink there is, and those that leave their mark how much there is not.
void JpegReader::MixInks(std::span<std::uint8_t> pixels) const {
  constexpr unsigned kFull = 255;
  const unsigned inverted = jpeg_.saw_Adobe_marker != 0 ? 0 : kFull;
  for (std::size_t pixel = 0; pixel < pixels.size(); pixel += 4) {
    const std::array<unsigned, 4> light{pixels[pixel] ^ inverted, pixels[pixel + 1] ^ inverted,
                                        pixels[pixel + 2] ^ inverted, pixels[pixel + 3] ^ inverted};
    for (std::size_t channel = 0; channel < 3; ++channel) {
      pixels[pixel + channel] =
          static_cast<std::uint8_t>((light[2 - channel] * light[3] + kFull / 2) / kFull);
    }
    pixels[pixel + 3] = kFull;
  }
}

simulator::Picture JpegReader::Read(const PictureSource& source) {
  jpeg_read_header(&jpeg_, TRUE);
  simulator::Picture picture =
      BeginPicture(jpeg_.image_width, jpeg_.image_height, DotsPerInch(), source);
  const bool isInk = jpeg_.num_components == 4;
  jpeg_.out_color_space = isInk ? JCS_CMYK : JCS_EXT_BGRA;
  jpeg_start_decompress(&jpeg_);
  std::vector<std::uint8_t> line(std::size_t{picture.width} * 4);
  for (std::uint32_t row = 0; row < picture.height; ++row) {
    std::uint8_t* to = line.data();
    jpeg_read_scanlines(&jpeg_, &to, 1);
    if (isInk) MixInks(line);
    AddPixels(line, picture);
  }
  return picture;
}

}  // namespace

simulator::Picture DecodeJpeg(const PictureSource& source) {
  return JpegReader(source.file).Read(source);
}

}  // namespace pmscan
