#include "pmscan/command_line/scan_words.h"

#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/image_words.h"
#include "pmscan/command_line/output_words.h"
#include "pmscan/command_line/word_choice.h"
#include "pmscan/report/error_codes.h"
#include "wire/document_source.h"

namespace pmscan {
namespace {

constexpr std::uint32_t kUsualResolution = 300;

// What was found under the word of an option, which has a list of its words. Throws
// Failure(kUsage) when that is nothing.
template <typename Found>
Found Require(Found found, const char* option, const std::string& word) {
  if (!found) RefuseWord(option, word);
  return found;
}

// A preview is as coarse as the scanner can.
std::uint32_t ResolutionOf(const CommandWords& words) {
  if (words.resolution != 0) return words.resolution;
  return words.isPreview ? 0 : kUsualResolution;
}

void ReadWords(const CommandWords& words, Options& options) {
  options.mode = *Require(FindScanMode(words.modeName), "mode", words.modeName);
  options.source = *Require(FindScanSource(words.sourceName), "source", words.sourceName);
  if (!words.progressName.empty()) {
    options.progress =
        Require(FindProgressStyle(words.progressName), "progress", words.progressName);
  }
  ReadOutput(words, options);
  if (!words.areaText.empty()) options.area = ParseArea(words.areaText);
  options.dotsPerInch = ResolutionOf(words);
}

void RequireEnd(const Options& options) {
  const bool isFeeder = options.source.code == pmddb832::kFeeder;
  if (!options.pages && !isFeeder) {
    throw Failure(kUnsupported,
                  "Only the feeder runs out of paper: say with --pages how many pages "
                  "to scan, or add --source feeder.");
  }
  if (options.paperSeconds > 0 && !isFeeder) {
    throw Failure(kUnsupported, "--wait-for-paper is for the feeder: add --source feeder.");
  }
}

void RequireConsistent(const Options& options) {
  RequireOutputHolds(options);
  RequireEnd(options);
  if (options.isInverted && options.mode.layout != PixelLayout::kBlackWhite) {
    throw Failure(kUnsupported, "--invert is for line art: add --mode lineart, or leave it out.");
  }
}

}  // namespace

void ReadScanWords(const CommandWords& words, Options& options) {
  ReadWords(words, options);
  RequireConsistent(options);
  ReadImageWords(words, options);
}

}  // namespace pmscan
