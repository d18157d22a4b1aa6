#include "pmscan/native/tiff_file.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>

namespace pmscan {
namespace {

// What the library may take at once: something for itself, and room for a picture.
constexpr std::uint64_t kForItself = 1 << 20;
constexpr std::uint64_t kMostPixelBytes = 8;

double DotsPerInch(TIFF* tiff) {
  constexpr double kCentimetersPerInch = 2.54;
  float resolution = 0;
  std::uint16_t unit = RESUNIT_INCH;
  // It is told for both directions or not at all; the horizontal one counts.
  if (TIFFGetField(tiff, TIFFTAG_YRESOLUTION, &resolution) == 0) return 0;
  if (TIFFGetField(tiff, TIFFTAG_XRESOLUTION, &resolution) == 0) return 0;
  TIFFGetFieldDefaulted(tiff, TIFFTAG_RESOLUTIONUNIT, &unit);
  if (unit == RESUNIT_CENTIMETER) return resolution * kCentimetersPerInch;
  return unit == RESUNIT_INCH ? resolution : 0;
}

bool IsPremultiplied(TIFF* tiff) {
  std::uint16_t count = 0;
  std::uint16_t* kinds = nullptr;
  TIFFGetFieldDefaulted(tiff, TIFFTAG_EXTRASAMPLES, &count, &kinds);
  return count > 0 && kinds[0] == EXTRASAMPLE_ASSOCALPHA;
}

bool IsByLines(TIFF* tiff) {
  std::uint16_t arrangement = PLANARCONFIG_CONTIG;
  std::uint16_t format = SAMPLEFORMAT_UINT;
  TIFFGetFieldDefaulted(tiff, TIFFTAG_PLANARCONFIG, &arrangement);
  TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLEFORMAT, &format);
  return arrangement == PLANARCONFIG_CONTIG && format == SAMPLEFORMAT_UINT &&
         TIFFIsTiled(tiff) == 0;
}

TiffLayout LayoutOf(TIFF* tiff) {
  TiffLayout layout;
  TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &layout.width);
  TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &layout.height);
  TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &layout.photometric);
  TIFFGetFieldDefaulted(tiff, TIFFTAG_BITSPERSAMPLE, &layout.bits);
  TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLESPERPIXEL, &layout.samples);
  layout.dotsPerInch = DotsPerInch(tiff);
  layout.isPremultiplied = IsPremultiplied(tiff);
  layout.isByLines = IsByLines(tiff);
  return layout;
}

// Keeps the first thing that went wrong.
int KeepReason(TIFF* /*tiff*/, void* kept, const char* /*module*/, const char* format,
               va_list values) {
  std::array<char, 200> words{};
  std::vsnprintf(words.data(), words.size(), format, values);
  std::string& reason = *static_cast<std::string*>(kept);
  if (reason.empty()) reason = words.data();
  return 1;
}

int Ignore(TIFF*, void*, const char*, const char*, va_list) {
  return 1;
}

tmsize_t Read(thandle_t handle, void* to, tmsize_t count) {
  TiffStream& stream = *static_cast<TiffStream*>(handle);
  const auto rest = stream.file.subspan(std::min(stream.place, stream.file.size()));
  const auto bytes = rest.first(std::min(static_cast<std::size_t>(count), rest.size()));
  std::copy(bytes.begin(), bytes.end(), static_cast<std::uint8_t*>(to));
  stream.place += bytes.size();
  return static_cast<tmsize_t>(bytes.size());
}

tmsize_t Write(thandle_t /*handle*/, void* /*from*/, tmsize_t /*count*/) {
  return 0;
}

toff_t Seek(thandle_t handle, toff_t offset, int from) {
  TiffStream& stream = *static_cast<TiffStream*>(handle);
  const std::size_t start = from == SEEK_CUR ? stream.place : stream.file.size();
  stream.place = (from == SEEK_SET ? 0 : start) + offset;
  return stream.place;
}

int Close(thandle_t /*handle*/) {
  return 0;
}

toff_t Size(thandle_t handle) {
  return static_cast<TiffStream*>(handle)->file.size();
}

}  // namespace

TiffFile::TiffFile(const PictureSource& source)
    : stream_{source.file, 0, {}},
      tiff_(Open(stream_, kForItself + source.mostPixels * kMostPixelBytes)) {
  Require(tiff_ != nullptr);
  // The picture is turned for all kinds of files in the same way, later.
  TIFFSetField(tiff_.get(), TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
  layout_ = LayoutOf(tiff_.get());
}

std::unique_ptr<TIFF, TiffFile::Closer> TiffFile::Open(TiffStream& stream,
                                                       std::uint64_t mostBytes) {
  const std::unique_ptr<TIFFOpenOptions, decltype(&TIFFOpenOptionsFree)> options(
      TIFFOpenOptionsAlloc(), &TIFFOpenOptionsFree);
  TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), static_cast<tmsize_t>(mostBytes));
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), &KeepReason, &stream.reason);
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), &Ignore, nullptr);
  const char* const readUnmapped = "rm";
  return std::unique_ptr<TIFF, Closer>(TIFFClientOpenExt("picture", readUnmapped, &stream, &Read,
                                                         &Write, &Seek, &Close, &Size, nullptr,
                                                         nullptr, options.get()));
}

void TiffFile::Require(bool isDone) const {
  if (isDone) return;
  throw PictureError(stream_.reason.empty() ? "it is no TIFF file" : stream_.reason);
}

void TiffFile::ReadLine(std::uint32_t row, void* to) {
  Require(TIFFReadScanline(tiff_.get(), to, row, 0) == 1);
}

std::vector<std::uint32_t> TiffFile::ReadColours(std::uint32_t width, std::uint32_t height) {
  std::vector<std::uint32_t> pixels(std::size_t{width} * height);
  const int stopAtErrors = 1;
  Require(TIFFReadRGBAImageOriented(tiff_.get(), width, height, pixels.data(), ORIENTATION_TOPLEFT,
                                    stopAtErrors) == 1);
  return pixels;
}

}  // namespace pmscan
