#include "pmscan/report/report.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

void AddLine(std::string& text, std::string_view label, std::string_view value) {
  std::string line(label);
  line.resize(std::max<std::size_t>(line.size(), 13), ' ');
  text.append(line).append(value).append("\n");
}

std::string LevelText(const ScannerFacts& scanner) {
  return scanner.level + (scanner.isExtended ? ", extended commands" : ", standard commands");
}

std::string PixelSizeText(std::uint32_t width, std::uint32_t height) {
  return std::to_string(width) + " x " + std::to_string(height);
}

std::string StatusText(std::uint32_t status) {
  if (status == 0) return "ready";
  return std::to_string(status) + ": " + std::string(FindErrorCode(status).meaning);
}

std::string ResolutionText(const ScannerFacts& scanner) {
  return std::to_string(scanner.lowestResolution) + " to " +
         std::to_string(scanner.highestResolution) + " dpi, basic " +
         std::to_string(scanner.basicResolution) + " dpi";
}

std::string SourceText(const SourceFacts& facts) {
  if (!facts.isFitted) return "not fitted";
  std::string text = facts.size.width == 0 ? "size not told" : FormatBedSize(facts.size);
  if (facts.widthPixels > 0) {
    text += ", " + PixelSizeText(facts.widthPixels, facts.heightPixels) +
            " pixels at the highest resolution";
  }
  return text + "; " + StatusText(facts.status);
}

// Empty for what needs no words: the one page that was asked for.
std::string PagesText(const ScanOutcome& outcome) {
  const bool isUntilEmpty = outcome.end == BatchEnd::kFeederEmpty;
  if (outcome.pages.size() == 1 && !isUntilEmpty) return {};
  return std::to_string(outcome.pages.size()) + (isUntilEmpty ? "; the feeder is empty" : "");
}

std::string FileText(const SavedFile& file, const ScanOutcome& outcome) {
  std::string text = file.name + ", " + outcome.formatName;
  std::size_t pages = 0;
  std::string part;
  for (const SavedPage& page : outcome.pages) {
    if (page.file != file.name) continue;
    ++pages;
    if (page.IsWhole()) continue;
    part = std::to_string(page.lines) + " of " + std::to_string(page.height) + " lines";
  }
  if (pages > 1) text += ", " + std::to_string(pages) + " pages";
  if (!part.empty()) text += (pages > 1 ? ", the last one " : ", ") + part;
  return text + ", " + std::to_string(file.bytes) + " bytes";
}

}  // namespace

std::string ModelText(const ScannerFacts& scanner) {
  if (scanner.model.empty()) return scanner.product.empty() ? "unknown" : scanner.product;
  return scanner.product.empty() ? scanner.model : scanner.model + " (" + scanner.product + ")";
}

std::string ScanReport(const ScannerFacts& scanner, const ScanSource& source,
                       const ScanRequest& request, const ScanOutcome& outcome) {
  const double dotsPerInch = request.resolution;
  std::array<char, 40> seconds{};
  std::snprintf(seconds.data(), seconds.size(), "%.1f s", outcome.seconds);
  const std::string pages = PagesText(outcome);
  std::string text;
  AddLine(text, "Model", ModelText(scanner));
  AddLine(text, "Level", LevelText(scanner));
  AddLine(text, "Source", source.description);
  AddLine(text, "Mode", request.mode.description);
  AddLine(text, "Resolution", std::to_string(request.resolution) + " dpi");
  if (request.image.zoom != 100) {
    AddLine(text, "Zoom",
            std::to_string(request.image.zoom) +
                " percent: " + std::to_string(request.dotsPerInch) + " dpi on the bed");
  }
  AddLine(text, "Pixels", PixelSizeText(request.area.width, request.area.height));
  AddLine(text, "Size",
          FormatSize(request.area.width / dotsPerInch, request.area.height / dotsPerInch));
  if (!pages.empty()) AddLine(text, "Pages", pages);
  for (const SavedFile& file : outcome.files) AddLine(text, "File", FileText(file, outcome));
  AddLine(text, "Time", seconds.data());
  return text;
}

std::string ScannerReport(const ScannerFacts& scanner) {
  std::string text;
  AddLine(text, "Model", ModelText(scanner));
  AddLine(text, "Product", scanner.product);
  AddLine(text, "Level", LevelText(scanner));
  AddLine(text, "Resolutions", ResolutionText(scanner));
  AddLine(text, "Halftones", std::to_string(scanner.halftones));
  for (const SourceFacts& facts : scanner.sources) {
    std::string label(facts.source.name);
    label[0] = static_cast<char>(label[0] - 'a' + 'A');
    AddLine(text, label, SourceText(facts));
  }
  return text;
}

}  // namespace pmscan
