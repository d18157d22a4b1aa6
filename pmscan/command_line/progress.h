#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace pmscan {

enum class ProgressStyle {
  kNone,
  kBar,    // one line that is written over, for a terminal
  kLines,  // a line for every tenth: the bar where lines cannot be written over
  kJson,   // a JSON object a line
};

// "bar", "json" or "none" as on the command line; nothing for another text.
std::optional<ProgressStyle> FindProgressStyle(std::string_view name);
std::string ProgressStyleNames();  // "bar, json, none"

// Prints how far the scan of each page is: lines, rate and time left. Any thread may call it.
class ProgressMeter {
 public:
  using Clock = std::chrono::steady_clock;

  // A bar is narrower than the terminal, which has at least one column, and is written over at most
  // ten times a second. `now` is asked for the time.
  ProgressMeter(std::ostream& output, ProgressStyle progressStyle, std::size_t terminalColumns,
                std::function<Clock::time_point()> now = &Clock::now);
  ~ProgressMeter() { EndLine(); }
  ProgressMeter(const ProgressMeter&) = delete;
  ProgressMeter& operator=(const ProgressMeter&) = delete;

  // What is waited for until a page begins: a bar shows it at once, and for how long with each
  // tick; plain lines tell it.
  void Await(const std::string& what);

  // The scan of a page begins, which a bar shows at once; pages count from 1.
  void BeginPage(std::uint32_t number, std::uint32_t lines);

  // So many lines of the page are there.
  void Show(std::uint32_t linesDone);

  // What goes on; a line in every style, which a bar writes over.
  void Say(const std::string& text);

  // What is to be read later as well; a line in every style, which nothing writes over.
  void Note(const std::string& text);

  // To be called some times a second. A bar tells what is waited for when nothing else has moved it
  // for a second.
  void Tick();

  // Leaves the line that is written over, so that other text can follow: ticks write nothing until
  // something else is told.
  void EndLine();

 private:
  void ShowBar(std::uint32_t linesDone);
  std::string WaitingText() const;
  void Move();
  void LeaveLine();
  void WriteOver(std::string line);
  std::uint32_t PercentOf(std::uint32_t linesDone) const;
  std::string Line(std::uint32_t linesDone) const;
  std::string JsonLine(std::uint32_t linesDone) const;
  double SecondsGone() const;

  std::ostream& out_;
  const ProgressStyle style_;
  const std::size_t columns_;
  const std::function<Clock::time_point()> clock_;
  Clock::time_point start_;
  Clock::time_point shown_;  // when the bar was written the last time
  Clock::time_point moved_;  // when the scan went on the last time
  std::uint32_t linesDone_ = 0;
  std::mutex mutex_;
  std::uint32_t page_ = 0;
  std::uint32_t total_ = 0;
  std::uint32_t nextPercent_ = 0;
  std::size_t lineLength_ = 0;  // of the line that is written over; 0 when there is none
  std::string awaited_;
  bool hasEnded_ = false;  // and nothing was told since
};

}  // namespace pmscan
