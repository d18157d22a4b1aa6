#include "pmscan/command_line/progress.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <ostream>

#include "pmscan/command_line/named_rows.h"

namespace pmscan {
namespace {

constexpr std::uint32_t kLineStep = 10;  // percent
constexpr std::size_t kMostBarCells = 24;
constexpr std::chrono::milliseconds kBetweenLines{100};
constexpr std::chrono::seconds kUntilWaiting{1};
constexpr const char* kUsuallyAwaited = "Waiting for the scanner";

using Lock = std::lock_guard<std::mutex>;

struct StyleRow {
  std::string_view name;
  ProgressStyle style;
};
constexpr std::array kStyles{
    StyleRow{"bar", ProgressStyle::kBar},
    StyleRow{"json", ProgressStyle::kJson},
    StyleRow{"none", ProgressStyle::kNone},
};

// At most so many cells as there is room for; nothing where it would tell nothing.
std::string Bar(std::uint32_t percent, std::size_t room) {
  constexpr std::size_t kFewestCells = 4;
  constexpr std::size_t kAround = 3;  // a blank and the brackets
  if (room < kFewestCells + kAround) return {};
  const std::size_t cells = std::min(kMostBarCells, room - kAround);
  const std::size_t full = cells * percent / 100;
  return " [" + std::string(full, '#') + std::string(cells - full, '.') + "]";
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
                             std::size_t terminalColumns, std::function<Clock::time_point()> now)
    : out_(output),
      style_(progressStyle),
      columns_(terminalColumns),
      clock_(std::move(now)),
      start_(clock_()),
      shown_(start_),
      moved_(start_),
      awaited_(kUsuallyAwaited) {}

void ProgressMeter::Await(const std::string& what) {
  const Lock lock(mutex_);
  Move();
  awaited_ = what;
  linesDone_ = total_ = 0;
  if (style_ == ProgressStyle::kBar) return WriteOver(what.substr(0, columns_ - 1));
  if (style_ == ProgressStyle::kLines) out_ << what + "\n" << std::flush;
}

void ProgressMeter::BeginPage(std::uint32_t number, std::uint32_t lines) {
  const Lock lock(mutex_);
  if (total_ > 0) LeaveLine();
  Move();
  page_ = number;
  total_ = lines;
  linesDone_ = 0;
  nextPercent_ = 0;
  start_ = moved_;
  awaited_ = kUsuallyAwaited;
  if (style_ == ProgressStyle::kBar && total_ > 0) WriteOver(Line(0));
}

void ProgressMeter::Show(std::uint32_t linesDone) {
  const Lock lock(mutex_);
  linesDone_ = linesDone;
  moved_ = clock_();
  if (style_ == ProgressStyle::kNone || total_ == 0) return;
  if (style_ == ProgressStyle::kBar) return ShowBar(linesDone);
  const std::uint32_t percent = PercentOf(linesDone);
  if (percent < nextPercent_) return;
  const bool isJson = style_ == ProgressStyle::kJson;
  nextPercent_ = isJson ? percent + 1 : (percent / kLineStep + 1) * kLineStep;
  out_ << (isJson ? JsonLine(linesDone) : Line(linesDone)) + "\n" << std::flush;
}

void ProgressMeter::ShowBar(std::uint32_t linesDone) {
  const Clock::time_point now = clock_();
  if (linesDone < total_ && now - shown_ < kBetweenLines) return;
  shown_ = now;
  WriteOver(Line(linesDone));
}

void ProgressMeter::Say(const std::string& text) {
  const Lock lock(mutex_);
  Move();
  if (style_ == ProgressStyle::kBar) return WriteOver(text.substr(0, columns_ - 1));
  out_ << text + "\n" << std::flush;
}

void ProgressMeter::Note(const std::string& text) {
  const Lock lock(mutex_);
  Move();
  if (style_ != ProgressStyle::kBar) {
    out_ << text + "\n" << std::flush;
    return;
  }
  WriteOver(text);
  LeaveLine();
}

void ProgressMeter::Move() {
  shown_ = moved_ = clock_();
  hasEnded_ = false;
}

void ProgressMeter::Tick() {
  const Lock lock(mutex_);
  const Clock::time_point now = clock_();
  if (style_ != ProgressStyle::kBar || hasEnded_ || now - shown_ < kUntilWaiting) return;
  shown_ = now;
  const bool isInPage = linesDone_ > 0 && linesDone_ < total_;
  if (!isInPage && linesDone_ > 0) {
    LeaveLine();
    linesDone_ = total_ = 0;
  }
  WriteOver((isInPage ? Line(linesDone_) : WaitingText()).substr(0, columns_ - 1));
}

// Before the first line of a page, or behind its last one.
std::string ProgressMeter::WaitingText() const {
  const bool isFirstLine = total_ > 0 && linesDone_ == 0;
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(shown_ - moved_).count();
  return (isFirstLine ? "Page " + std::to_string(page_) + "  waiting for the first line, "
                      : awaited_ + ", ") +
         std::to_string(seconds) + " s";
}

std::uint32_t ProgressMeter::PercentOf(std::uint32_t linesDone) const {
  return static_cast<std::uint32_t>(std::uint64_t{linesDone} * 100 / total_);
}

std::string ProgressMeter::Line(std::uint32_t linesDone) const {
  const std::uint32_t percent = PercentOf(linesDone);
  const Pace pace = PaceOf(linesDone, total_, SecondsGone());
  std::array<char, 120> figures{};
  std::snprintf(figures.data(), figures.size(), " %3u %%  %u of %u lines", percent, linesDone,
                total_);
  std::string text = figures.data();
  if (pace.linesPerSecond > 0) {
    text += ", " + std::to_string(std::lround(pace.linesPerSecond)) + " lines/s";
    if (linesDone < total_) text += ", " + TimeLeft(pace.secondsLeft);
  }
  const std::string page = "Page " + std::to_string(page_);
  if (style_ != ProgressStyle::kBar) return page + text;
  // A terminal may begin a new line behind its last column.
  const std::size_t most = columns_ - 1;
  const std::size_t taken = page.size() + text.size();
  return (page + Bar(percent, most > taken ? most - taken : 0) + text).substr(0, most);
}

// In one piece, as each goes to the terminal by itself. Blanks cover what is left of a longer line.
void ProgressMeter::WriteOver(std::string line) {
  const std::size_t length = line.size();
  if (length < lineLength_) line.append(lineLength_ - length, ' ');
  lineLength_ = length;
  out_ << "\r" + line << std::flush;
}

std::string ProgressMeter::JsonLine(std::uint32_t linesDone) const {
  const Pace pace = PaceOf(linesDone, total_, SecondsGone());
  std::array<char, 200> text{};
  std::snprintf(text.data(), text.size(),
                R"({"page": %u, "lines": %u, "height": %u, "linesPerSecond": %.0f, )"
                R"("secondsLeft": %.1f})",
                page_, linesDone, total_, pace.linesPerSecond, pace.secondsLeft);
  return text.data();
}

double ProgressMeter::SecondsGone() const {
  return std::chrono::duration<double>(clock_() - start_).count();
}

void ProgressMeter::EndLine() {
  const Lock lock(mutex_);
  LeaveLine();
  hasEnded_ = true;
}

void ProgressMeter::LeaveLine() {
  if (lineLength_ > 0) out_ << "\n" << std::flush;
  lineLength_ = 0;
}

}  // namespace pmscan
