#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace pmscan {

// Names of the files that the pages of a scan go to, in UTF-8: one file for all of them, or one for
// each page with its number in the name. Pages are numbered from 1.
class PageNames {
 public:
  PageNames() = default;

  // All pages go to `file`.
  static PageNames Single(std::string file);

  // "page%03d.png" gives page001.png, page002.png; "%d" alone has no leading zeros, and "%%" stands
  // for a percent sign. Throws Failure(kUsage) unless there is exactly one number in the name.
  static PageNames Numbered(std::string_view pattern);

  // Whether the text holds a percent sign, and so is meant as a pattern.
  static bool IsPattern(std::string_view text) { return text.find('%') != std::string_view::npos; }

  bool AreNumbered() const { return isNumbered_; }
  std::string Of(std::uint32_t page) const;

  // Whether the file is that of a page.
  bool Include(const std::string& file) const;

  // The numbers in the names of the files in the folder, where the page's number would stand; what
  // else is in those names does not matter.
  std::set<std::uint32_t> NumbersInUse() const;

 private:
  std::string before_;
  std::string behind_;
  std::size_t digits_ = 1;
  bool isNumbered_ = false;
};

// The first file that one of the pages would replace: the page's own, or that under which it grows.
// `pages` is how many there can be, nothing for any number.
std::optional<std::string> FirstOccupied(const PageNames& names,
                                         const std::optional<std::uint32_t>& pages);

// Throws Failure(kOutputFile) when one of the files cannot be written: its folder is missing, what
// stands there is no file, or a file that may not be replaced. Tries it, and leaves nothing behind.
void RequireRoom(const PageNames& names, const std::optional<std::uint32_t>& pages,
                 bool mayOverwrite);

// Name of the file that a picture is written to before it takes its place; beside the place that a
// link leads to.
std::string GrowingName(const std::string& file);

}  // namespace pmscan
