#include "pmscan/pictures/picture_writer.h"

#include <filesystem>
#include <fstream>
#include <system_error>

#include "pmscan/command_line/console.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/file_name.h"
#include "pmscan/encoders/encoders.h"
#include "pmscan/pictures/picture_pixels.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/scan/page_names.h"

namespace pmscan {
namespace {

// Standard output takes a picture when it is whole.
std::unique_ptr<const TemporaryFile> TemporaryFor(const std::string& name) {
  if (name != kStandardOutput) return nullptr;
  return std::make_unique<const TemporaryFile>();
}

std::unique_ptr<const GrowingFile> GrowingFor(const std::string& name) {
  if (name == kStandardOutput) return nullptr;
  return std::make_unique<const GrowingFile>(PathOf(GrowingName(name)), PlaceOf(name));
}

void PourOut(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  if (WriteStandardOutput(stream)) return;
  throw Failure(kOutputFile, "Standard output does not take the picture.");
}

}  // namespace

PictureWriter::PictureWriter(const PictureFile& pictureFile)
    : file_(pictureFile),
      temporary_(TemporaryFor(file_.name)),
      growing_(GrowingFor(file_.name)),
      bytes_(temporary_ ? ByteFile(temporary_->Path(), "the temporary file for standard output")
                        : ByteFile(growing_->Path(), file_.name)),
      encoder_(MakeEncoder(file_.format.container, bytes_,
                           {file_.mode.layout, file_.dotsPerInch, file_.quality, file_.origin})) {}

void PictureWriter::BeginPage(std::uint32_t width, std::uint32_t height) {
  pageWidth_ = width;
  linesWritten_ = 0;
  encoder_->BeginPage(width, height);
}

// Behind the pixels of a delivered line may stand some bytes more.
void PictureWriter::Write(std::span<const std::uint8_t> rows, std::uint32_t, std::uint32_t lines) {
  const auto pixels = PicturePixels(rows, file_.mode, file_.sampleBits, converted_);
  const std::size_t lineBytes = pixels.size() / lines;
  for (std::size_t line = 0; line < lines; ++line) {
    encoder_->WriteLine(pixels.subspan(line * lineBytes, LineBytes(file_.mode.layout, pageWidth_)));
  }
  linesWritten_ += lines;
}

void PictureWriter::EndPage(bool isKept) {
  encoder_->EndPage(isKept ? linesWritten_ : 0);
  if (isKept) ++pages_;
}

std::uint64_t PictureWriter::Commit() {
  encoder_->Finish();
  bytes_.Close();
  if (temporary_) {
    PourOut(temporary_->Path());
    return bytes_.Size();
  }
  const std::uint32_t error = growing_->TakePlace(file_.mayReplace);
  if (error == 0) return bytes_.Size();
  throw Failure(kOutputFile,
                file_.name + ": cannot put the file in its place: " + SystemWords(error) + ".");
}

}  // namespace pmscan
