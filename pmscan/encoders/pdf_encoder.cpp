#include "pmscan/encoders/pdf_encoder.h"

#include <array>
#include <cstdio>
#include <utility>

#include "pmscan/command_line/failure.h"
#include "pmscan/encoders/pixel_order.h"
#include "pmscan/pictures/picture_format.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

constexpr double kPointsPerInch = 72;
constexpr std::uint64_t kMostBytes = 9999999999;  // places have ten digits

bool IsJpeg(PixelLayout layout) {
  return IsJpegIn(Container::kPdf, layout);
}

std::string Points(std::uint32_t pixels, std::uint32_t dotsPerInch) {
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%.4f", pixels * kPointsPerInch / dotsPerInch);
  return text.data();
}

// A number that takes the same room whatever it is, so that it can be filled in later.
std::string Padded(std::uint64_t number) {
  std::string text = std::to_string(number);
  text.resize(12, ' ');
  return text;
}

// "(a text)" in which brackets mean nothing.
std::string Text(const std::string& plain) {
  std::string text = "(";
  for (const char letter : plain) {
    if (letter == '(' || letter == ')' || letter == '\\') text += '\\';
    text += letter;
  }
  return text + ")";
}

std::string Reference(std::size_t number) {
  return std::to_string(number) + " 0 R";
}

std::string PaletteSpace() {
  std::string text = "[/Indexed /DeviceRGB " + std::to_string(kPaletteColours - 1) + " <";
  for (std::size_t i = 0; i < kPaletteColours; ++i) {
    for (const std::uint8_t light : PaletteColour(i)) {
      std::array<char, 3> digits{};
      std::snprintf(digits.data(), digits.size(), "%02X", unsigned{light});
      text += digits.data();
    }
  }
  return text + ">]";
}

std::string ColourSpace(PixelLayout layout) {
  if (layout == PixelLayout::kPalette) return PaletteSpace();
  return SamplesPerPixel(layout) == 3 ? "/DeviceRGB" : "/DeviceGray";
}

std::string Compression(PixelLayout layout, std::uint32_t width) {
  if (IsJpeg(layout)) return "/DCTDecode";
  const std::string columns = " /Columns " + std::to_string(width);
  if (layout == PixelLayout::kBlackWhite) {
    return "/CCITTFaxDecode /DecodeParms << /K -1" + columns + " >>";
  }
  return "/FlateDecode /DecodeParms << /Predictor 15 /Colors " +
         std::to_string(SamplesPerPixel(layout)) + " /BitsPerComponent " +
         std::to_string(BitsPerSample(layout)) + columns + " >>";
}

}  // namespace

PdfEncoder::PdfEncoder(ByteFile& file, PageForm form) : file_(file), form_(std::move(form)) {
  // Bytes above 127 tell programs that pass the file on that it is no text.
  file_.Append("%PDF-1.5\n%\xE2\xE3\xCF\xD3\n");
  places_.push_back(0);
  pageTree_ = places_.size();
}

std::size_t PdfEncoder::BeginObject() {
  places_.push_back(0);
  BeginObject(places_.size());
  return places_.size();
}

void PdfEncoder::BeginObject(std::size_t number) {
  places_[number - 1] = file_.Size();
  file_.Append(std::to_string(number) + " 0 obj\n");
}

void PdfEncoder::AppendObject(std::string_view body) {
  file_.Append(std::string(body) + "\nendobj\n");
}

std::string PdfEncoder::PictureDictionary(std::uint32_t lines, std::uint64_t bytes) const {
  return "<< /Type /XObject /Subtype /Image /Width " + std::to_string(width_) + " /Height " +
         Padded(lines) + " /ColorSpace " + ColourSpace(form_.layout) + " /BitsPerComponent " +
         std::to_string(BitsPerSample(form_.layout)) + " /Filter " +
         Compression(form_.layout, width_) + " /Length " + Padded(bytes) + " >>\nstream\n";
}

void PdfEncoder::BeginPage(std::uint32_t width, std::uint32_t height) {
  width_ = width;
  objectsBefore_ = places_.size();
  pageStart_ = file_.Size();
  BeginObject();
  dictionary_ = file_.Size();
  file_.Append(PictureDictionary(height, 0));
  data_ = file_.Size();
  if (form_.layout == PixelLayout::kBlackWhite) {
    fax_.emplace(width);
  } else if (IsJpeg(form_.layout)) {
    jpeg_.emplace(file_, form_, width, height);
  } else {
    deflater_.emplace(form_.layout, LineBytes(form_.layout, width));
  }
}

void PdfEncoder::WriteLine(std::span<const std::uint8_t> line) {
  if (jpeg_) return jpeg_->WriteLine(line);
  if (fax_) {
    fax_->WriteLine(line);
  } else {
    deflater_->WriteLine(line);
  }
  TakeData();
}

void PdfEncoder::TakeData() {
  const std::vector<std::uint8_t> bytes = fax_ ? fax_->Take() : deflater_->Take();
  if (!bytes.empty()) file_.Append(bytes);
}

void PdfEncoder::EndPage(std::uint32_t lines) {
  if (lines == 0) {
    places_.resize(objectsBefore_);
    return file_.CutTo(pageStart_);
  }
  if (jpeg_) {
    jpeg_->End(lines);
  } else {
    fax_ ? fax_->End() : deflater_->End();
    TakeData();
  }
  file_.WriteAt(dictionary_, PictureDictionary(lines, file_.Size() - data_));
  AppendObject("\nendstream");
  AppendPageOf(places_.size(), lines);
}

void PdfEncoder::AppendPageOf(std::size_t picture, std::uint32_t lines) {
  const std::string width = Points(width_, form_.dotsPerInch);
  const std::string height = Points(lines, form_.dotsPerInch);
  const std::string drawing = "q " + width + " 0 0 " + height + " 0 0 cm /Scan Do Q\n";
  const std::size_t content = BeginObject();
  AppendObject("<< /Length " + std::to_string(drawing.size()) + " >>\nstream\n" + drawing +
               "endstream");
  pages_.push_back(BeginObject());
  AppendObject("<< /Type /Page /Parent " + Reference(pageTree_) + " /MediaBox [0 0 " + width + " " +
               height + "] /Resources << /XObject << /Scan " + Reference(picture) +
               " >> >> /Contents " + Reference(content) + " >>");
}

void PdfEncoder::Finish() {
  std::array<char, 24> date{};
  std::strftime(date.data(), date.size(), "D:%Y%m%d%H%M%S", &form_.origin.date);
  std::string kids;
  for (const std::size_t page : pages_) kids += Reference(page) + "\n";
  BeginObject(pageTree_);
  AppendObject("<< /Type /Pages /Count " + std::to_string(pages_.size()) + " /Kids [" + kids +
               "] >>");
  const std::size_t catalog = BeginObject();
  AppendObject("<< /Type /Catalog /Pages " + Reference(pageTree_) + " >>");
  const std::size_t information = BeginObject();
  AppendObject("<< /Creator " + Text(form_.origin.scanner) + " /Producer " +
               Text(form_.origin.software) + " /CreationDate " + Text(date.data()) + " >>");
  AppendCrossReferences(catalog, information);
}

void PdfEncoder::AppendCrossReferences(std::size_t catalog, std::size_t information) {
  const std::uint64_t start = file_.Size();
  if (start > kMostBytes) {
    throw Failure(kOutputFile, file_.Name() + ": a PDF file holds 10 GB at most; write several.");
  }
  const std::string count = std::to_string(places_.size() + 1);
  std::string text = "xref\n0 " + count + "\n0000000000 65535 f \n";
  for (const std::uint64_t place : places_) {
    std::string digits = std::to_string(place);
    digits.insert(0, 10 - digits.size(), '0');
    text += digits + " 00000 n \n";
  }
  file_.Append(text + "trailer\n<< /Size " + count + " /Root " + Reference(catalog) + " /Info " +
               Reference(information) + " >>\nstartxref\n" + std::to_string(start) + "\n%%EOF\n");
}

}  // namespace pmscan
