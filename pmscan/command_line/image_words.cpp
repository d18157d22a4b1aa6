#include "pmscan/command_line/image_words.h"

#include <charconv>
#include <cmath>

#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/named_rows.h"
#include "pmscan/command_line/word_choice.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/settings/number_file.h"
#include "wire/document_source.h"

namespace pmscan {
namespace {

bool IsLineArt(const Options& options) {
  return options.mode.layout == PixelLayout::kBlackWhite;
}

bool HasOneChannel(const Options& options) {
  return IsLineArt(options) || options.mode.layout == PixelLayout::kGrey8 ||
         options.mode.layout == PixelLayout::kGrey16;
}

// By name, or by the number of its row.
std::uint8_t ReadHalftone(const std::string& word) {
  constexpr unsigned kLast = 9;
  unsigned row = 0;
  const char* const end = word.data() + word.size();
  const auto [rest, error] = std::from_chars(word.data(), end, row);
  if (error == std::errc() && rest == end && row <= kLast) return static_cast<std::uint8_t>(row);
  const NamedNumber* const found = FindByName(kHalftoneNames, word);
  if (found == nullptr) RefuseWord("halftone", word);
  return static_cast<std::uint8_t>(found->number);
}

std::uint16_t ReadGamma(const std::string& word) {
  double gamma = 0;
  const char* const end = word.data() + word.size();
  const auto [rest, error] = std::from_chars(word.data(), end, gamma);
  for (const NamedNumber& row : kGammas) {
    if (error == std::errc() && rest == end && std::abs(gamma * 100 - row.number) < 0.001) {
      return row.number;
    }
  }
  RefuseWord("gamma", word);
}

std::uint16_t ReadChannel(const std::string& word) {
  if (word.empty()) return 0;
  const NamedNumber* const found = FindByName(kChannels, word);
  if (found == nullptr) RefuseWord("channel", word);
  return found->number;
}

void ReadNumbers(const CommandWords& words, ImageSettings& image) {
  image.threshold = static_cast<std::uint8_t>(words.threshold);
  image.brightness = words.brightness;
  image.sharpness = words.sharpness;
  image.zoom = static_cast<std::uint16_t>(words.zoom);
  image.isPreview = words.isPreview;
  image.keepsPaper = words.keepsPaper;
}

void ReadWords(const CommandWords& words, ImageSettings& image) {
  image.halftone = ReadHalftone(words.halftoneName);
  if (!words.gammaText.empty()) image.gamma = ReadGamma(words.gammaText);
  image.channel = ReadChannel(words.channelName);
  if (!words.gammaFile.empty()) image.gammaTables = ReadGammaTables(words.gammaFile);
  if (!words.matrixFile.empty()) image.colorMatrix = ReadColorMatrix(words.matrixFile);
}

void Require(bool isPossible, const char* sentence) {
  if (!isPossible) throw Failure(kUnsupported, sentence);
}

void RequireLineArtFits(const Options& options) {
  const ImageSettings& image = options.image;
  const bool isLineArt = IsLineArt(options);
  Require(image.threshold == 0 || isLineArt,
          "--threshold is for line art: add --mode lineart, or leave it out.");
  Require(image.halftone == 0 || isLineArt,
          "--halftone is for line art: add --mode lineart, or leave it out.");
  Require(image.threshold == 0 || image.halftone == 0,
          "A halftone has thresholds of its own: leave out --threshold or --halftone.");
}

void RequireTonesFit(const CommandWords& words, const ImageSettings& image) {
  if (!image.gammaTables) return;
  Require(words.gammaText.empty(),
          "A gamma table is all of the gamma: leave out --gamma or "
          "--gamma-table.");
  Require(image.brightness == 0,
          "With a gamma table the scanner is told no brightness: leave out "
          "--brightness, and let the table be brighter.");
}

void RequireChannelsFit(const Options& options) {
  const ImageSettings& image = options.image;
  Require(image.channel == 0 || HasOneChannel(options),
          "--channel scans one colour channel: add --mode grey, lineart or deep-grey.");
  Require(image.channel == 0 || !image.colorMatrix,
          "A single channel has no colours to correct: leave out --channel or --color-matrix.");
}

// The module knows a preview of grey only; in other modes it is coarse and nothing else. Of deep
// samples it takes half, from a scanner that sends them whole.
void RequirePreviewFits(const CommandWords& words, const Options& options) {
  if (!options.image.isPreview) return;
  Require(!IsDeep(options.mode.layout),
          "A preview has samples of 8 bits: add --mode grey or colour, or leave --preview out.");
  Require(words.resolution == 0 || options.mode.layout == PixelLayout::kGrey8,
          "A preview differs by its resolution, and in mode grey by its tones: leave out "
          "--resolution or --preview.");
}

}  // namespace

void ReadImageWords(const CommandWords& words, Options& options) {
  ReadNumbers(words, options.image);
  ReadWords(words, options.image);
  if (!words.focusText.empty()) options.focus = ParseFocus(words.focusText);
  RequireLineArtFits(options);
  RequireTonesFit(words, options.image);
  RequireChannelsFit(options);
  RequirePreviewFits(words, options);
  Require(!options.image.keepsPaper || options.source.code == pmddb832::kFeeder,
          "--keep-paper is for the feeder: add --source feeder, or leave it out.");
}

}  // namespace pmscan
