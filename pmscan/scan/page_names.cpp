#include "pmscan/scan/page_names.h"

#include <cerrno>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/file_name.h"
#include "pmscan/pictures/picture_format.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

constexpr std::size_t kMostDigits = 9;

[[noreturn]] void RefusePattern(std::string_view pattern) {
  throw Failure(kUsage, "\"" + std::string(pattern) +
                            "\" is no pattern for file names: write %d or %03d once, where the "
                            "page's number shall stand, and a percent sign as %%.");
}

// The digits behind a percent sign: "03d" gives 3, "d" gives 1. Cuts them off, with their letter.
std::size_t CutDigits(std::string_view& rest, std::string_view pattern) {
  std::size_t digits = 1;
  if (rest.starts_with('0')) {
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), digits);
    if (error != std::errc() || digits < 1 || digits > kMostDigits) RefusePattern(pattern);
    rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
  }
  if (!rest.starts_with('d')) RefusePattern(pattern);
  rest.remove_prefix(1);
  return digits;
}

// The number that stands in a file's name where the page's number would; 0 when none does.
std::uint32_t NumberAt(const std::string& name, std::size_t place) {
  std::uint32_t number = 0;
  if (place < name.size()) {
    std::from_chars(name.data() + place, name.data() + name.size(), number);
  }
  return number;
}

bool Exists(const std::string& file) {
  std::error_code ignored;
  return std::filesystem::exists(PathOf(file), ignored);
}

std::optional<std::string> OccupiedFile(const std::string& file) {
  if (file == kStandardOutput) return std::nullopt;
  if (Exists(file)) return file;
  if (Exists(GrowingName(file))) return GrowingName(file);
  return std::nullopt;
}

// Why the file cannot be written, without the full stop; empty when it can. Tries it.
std::string ObstacleOf(const std::string& file) {
  if (std::string standing = StandingInPlace(file); !standing.empty()) return standing;
  const std::filesystem::path growing = PathOf(GrowingName(file));
  const std::filesystem::path folder = growing.has_parent_path() ? growing.parent_path() : ".";
  std::error_code ignored;
  if (!std::filesystem::is_directory(folder, ignored)) {
    return "there is no folder " + Utf8(folder);
  }
  if (std::filesystem::exists(growing, ignored)) return {};
  const bool isWritable = std::ofstream(growing).is_open();
  const int reason = errno;
  std::filesystem::remove(growing, ignored);
  if (isWritable) return {};
  return Utf8(growing) + " does not open for writing: " + std::generic_category().message(reason);
}

// What one of the pages would have to replace and cannot.
std::string FirstStanding(const PageNames& names, const std::optional<std::uint32_t>& pages) {
  if (!names.AreNumbered()) return {};
  for (const std::uint32_t page : names.NumbersInUse()) {
    if (pages && page > *pages) break;
    if (std::string standing = StandingInPlace(names.Of(page)); !standing.empty()) return standing;
  }
  return {};
}

}  // namespace

PageNames PageNames::Single(std::string file) {
  PageNames names;
  names.before_ = std::move(file);
  return names;
}

PageNames PageNames::Numbered(std::string_view pattern) {
  PageNames names;
  std::string_view rest = pattern;
  while (!rest.empty()) {
    const char letter = rest.front();
    rest.remove_prefix(1);
    std::string& part = names.isNumbered_ ? names.behind_ : names.before_;
    if (letter != '%') {
      part += letter;
    } else if (rest.starts_with('%')) {
      part += '%';
      rest.remove_prefix(1);
    } else {
      if (names.isNumbered_) RefusePattern(pattern);
      names.digits_ = CutDigits(rest, pattern);
      names.isNumbered_ = true;
    }
  }
  // The number counts files, not folders.
  const bool isInFolder = names.behind_.find_first_of("/\\") != std::string::npos;
  if (!names.isNumbered_ || isInFolder) RefusePattern(pattern);
  return names;
}

std::string PageNames::Of(std::uint32_t page) const {
  if (!isNumbered_) return before_;
  std::string number = std::to_string(page);
  if (number.size() < digits_) number.insert(0, digits_ - number.size(), '0');
  return before_ + number + behind_;
}

std::set<std::uint32_t> PageNames::NumbersInUse() const {
  const std::filesystem::path start = PathOf(before_);
  const std::filesystem::path folder = start.has_parent_path() ? start.parent_path() : ".";
  const std::size_t place = Utf8(start.filename()).size();
  std::set<std::uint32_t> numbers;
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator(folder, ignored)) {
    numbers.insert(NumberAt(Utf8(entry.path().filename()), place));
  }
  numbers.erase(0);
  return numbers;
}

bool PageNames::Include(const std::string& file) const {
  if (!isNumbered_) return before_ != kStandardOutput && IsSameFile(before_, file);
  const std::size_t place = Utf8(PathOf(before_).filename()).size();
  const std::uint32_t page = NumberAt(Utf8(PathOf(file).filename()), place);
  return page > 0 && IsSameFile(Of(page), file);
}

std::optional<std::string> FirstOccupied(const PageNames& names,
                                         const std::optional<std::uint32_t>& pages) {
  if (!names.AreNumbered()) return OccupiedFile(names.Of(1));
  for (const std::uint32_t page : names.NumbersInUse()) {
    if (pages && page > *pages) break;
    if (auto file = OccupiedFile(names.Of(page))) return file;
  }
  return std::nullopt;
}

void RequireRoom(const PageNames& names, const std::optional<std::uint32_t>& pages,
                 bool mayOverwrite) {
  const std::string first = names.Of(1);
  std::string obstacle = first == kStandardOutput ? "" : ObstacleOf(first);
  if (obstacle.empty()) obstacle = FirstStanding(names, pages);
  if (!obstacle.empty()) throw Failure(kOutputFile, obstacle + ".");
  if (mayOverwrite) return;
  if (const auto file = FirstOccupied(names, pages)) {
    throw Failure(kOutputFile, IsThereAlready(*file));
  }
}

std::string GrowingName(const std::string& file) {
  return Utf8(PlaceOf(file)) + ".part";
}

}  // namespace pmscan
