#include "pmscan/command_line/progress.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <ostream>

#include "pmscan/command_line/named_rows.h"

namespace pmscan {
namespace {

constexpr std::uint32_t kLineStep = 10;  // percent
constexpr std::uint32_t kBarCells = 24;

struct StyleRow {
  std::string_view name;
  ProgressStyle style;
};
constexpr std::array kStyles{
    StyleRow{"bar", ProgressStyle::kBar},
    StyleRow{"json", ProgressStyle::kJson},
    StyleRow{"none", ProgressStyle::kNone},
};

std::string Bar(std::uint32_t percent) {
  const std::uint32_t full = kBarCells * percent / 100;
  std::string bar = "[";
  return bar.append(full, '#').append(kBarCells - full, '.').append("]");
}

// How fast it goes, and for how long yet; 0 as long as that is not known.
struct Pace {
  double linesPerSecond = 0;
  double secondsLeft = 0;
};

Pace PaceOf(std::uint32_t linesDone, std::uint32_t total, double seconds) {
  if (linesDone == 0 || seconds <= 0) return {};
  const double rate = linesDone / seconds;
  return {rate, (total - linesDone) / rate};
}

// "1:05 left" once it takes a minute, else "12 s left".
std::string TimeLeft(double secondsLeft) {
  const auto seconds = static_cast<unsigned>(std::ceil(secondsLeft));
  std::array<char, 40> text{};
  if (seconds < 60) {
    std::snprintf(text.data(), text.size(), "%u s left", seconds);
  } else {
    std::snprintf(text.data(), text.size(), "%u:%02u min left", seconds / 60, seconds % 60);
  }
  return text.data();
}

}  // namespace

std::optional<ProgressStyle> FindProgressStyle(std::string_view name) {
  const StyleRow* const row = FindByName(kStyles, name);
  return row == nullptr ? std::nullopt : std::optional(row->style);
}

std::string ProgressStyleNames() {
  return NamesOf(kStyles);
}

ProgressMeter::ProgressMeter(std::ostream& output, ProgressStyle progressStyle,
                             std::function<Clock::time_point()> now)
    : out_(output), style_(progressStyle), clock_(std::move(now)), start_(clock_()) {}

void ProgressMeter::BeginPage(std::uint32_t number, std::uint32_t lines) {
  EndLine();
  page_ = number;
  total_ = lines;
  nextPercent_ = 0;
  start_ = clock_();
}

void ProgressMeter::Show(std::uint32_t linesDone) {
  if (style_ == ProgressStyle::kNone || total_ == 0) return;
  const auto percent = static_cast<std::uint32_t>(std::uint64_t{linesDone} * 100 / total_);
  if (percent < nextPercent_) return;
  const bool isEveryPercent = style_ != ProgressStyle::kLines;
  nextPercent_ = isEveryPercent ? percent + 1 : (percent / kLineStep + 1) * kLineStep;
  if (style_ == ProgressStyle::kJson) {
    ShowJson(linesDone);
  } else {
    ShowBar(linesDone, style_ == ProgressStyle::kBar);
  }
  out_.flush();
}

void ProgressMeter::ShowBar(std::uint32_t linesDone, bool isOneLine) {
  const auto percent = static_cast<std::uint32_t>(std::uint64_t{linesDone} * 100 / total_);
  const Pace pace = PaceOf(linesDone, total_, SecondsGone());
  std::array<char, 120> figures{};
  std::snprintf(figures.data(), figures.size(), " %3u %%  %u of %u lines", percent, linesDone,
                total_);
  std::string line = "Page " + std::to_string(page_);
  if (isOneLine) line += " " + Bar(percent);
  line += figures.data();
  if (pace.linesPerSecond > 0) {
    line += ", " + std::to_string(std::lround(pace.linesPerSecond)) + " lines/s";
    if (linesDone < total_) line += ", " + TimeLeft(pace.secondsLeft);
  }
  if (!isOneLine) {
    out_ << line << "\n";
    return;
  }
  // Blanks cover what is left of a longer line.
  const std::size_t length = line.size();
  if (length < lineLength_) line.append(lineLength_ - length, ' ');
  lineLength_ = length;
  out_ << "\r" << line;
}

void ProgressMeter::ShowJson(std::uint32_t linesDone) {
  const Pace pace = PaceOf(linesDone, total_, SecondsGone());
  std::array<char, 200> text{};
  std::snprintf(text.data(), text.size(),
                R"({"page": %u, "lines": %u, "height": %u, "linesPerSecond": %.0f, )"
                R"("secondsLeft": %.1f})",
                page_, linesDone, total_, pace.linesPerSecond, pace.secondsLeft);
  out_ << text.data() << "\n";
}

double ProgressMeter::SecondsGone() const {
  return std::chrono::duration<double>(clock_() - start_).count();
}

void ProgressMeter::EndLine() {
  if (lineLength_ > 0) out_ << "\n" << std::flush;
  lineLength_ = 0;
}

}  // namespace pmscan
