#include "pmscan/command_line/output_words.h"

#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/word_choice.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

// Without a file and a word there is none yet.
PictureFormat FormatOf(const CommandWords& words, const std::string& name) {
  if (!words.formatName.empty()) {
    const PictureFormat* const format = FindFormat(words.formatName);
    if (format == nullptr) RefuseWord("format", words.formatName);
    return *format;
  }
  if (name.empty()) return {};
  return name == kStandardOutput ? *FindFormat("png") : FormatByFileName(name);
}

void RequireOutput(const Options& options) {
  if (options.hasOutput || options.isDryRun || !options.savedProfile.empty()) return;
  throw Failure(kUsage, "A scan needs a file for its picture: -o FILE, or --batch NAME.");
}

// One file holds several pages only when its format does.
void RequirePagesFit(const Options& options) {
  const bool hasSeveral = !options.pages || *options.pages > 1;
  if (options.names.AreNumbered() || !hasSeveral || !options.hasOutput) return;
  if (HoldsPages(options.format)) return;
  throw Failure(kUnsupported, "A " + std::string(options.format.name) +
                                  " file holds one page: number the files, as in --batch "
                                  "page%03d." +
                                  std::string(options.format.extension) +
                                  ", or write a .tif or .pdf file.");
}

void RequireOneForOutput(const Options& options) {
  if (!options.hasOutput || options.names.Of(1) != kStandardOutput) return;
  if (!options.pages || *options.pages > 1) {
    throw Failure(kUnsupported, "Standard output takes one page: name a file with -o FILE.");
  }
  if (options.isJson) {
    throw Failure(kUnsupported,
                  "Standard output takes the picture or the report: leave out --json, or name a "
                  "file with -o FILE.");
  }
}

// Nothing that is asked for is left out in silence.
void RequireQualityCounts(const Options& options) {
  if (options.quality == 0 || !options.hasOutput) return;
  if (IsJpegIn(options.format.container, options.mode.layout)) return;
  throw Failure(kUnsupported, std::string(options.format.name) + " files of " +
                                  std::string(options.mode.description) +
                                  " hold no JPEG: leave out --quality.");
}

}  // namespace

void ReadOutput(const CommandWords& words, Options& options) {
  const bool isBatch = !words.batch.empty();
  const std::string& name = isBatch ? words.batch : words.output;
  options.hasOutput = !name.empty();
  if (words.pageCount > 0) options.pages = words.pageCount;
  options.format = FormatOf(words, name);
  if (!options.hasOutput) return;
  options.names =
      isBatch && PageNames::IsPattern(name) ? PageNames::Numbered(name) : PageNames::Single(name);
  if (isBatch && words.pageCount == 0) options.pages.reset();
}

void RequireOutputHolds(const Options& options) {
  RequireOutput(options);
  RequireHolds(options.format, options.mode);
  RequirePagesFit(options);
  RequireOneForOutput(options);
  RequireQualityCounts(options);
}

}  // namespace pmscan
