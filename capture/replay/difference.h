#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace capture {

// What the module did in another way than the capture tells.
struct Difference {
  std::uint32_t line = 0;  // of the capture's file, 0 when it comes from none
  std::string call;        // the export that was called; empty outside the calls
  std::string expected;    // as a capture would hold it, without the last line feed
  std::string came;
  std::string decoded;  // what that means, a line for each fact; may be empty
};

// Collects differences. After the first one a strict comparison is over.
class DifferenceLog {
 public:
  explicit DifferenceLog(bool isTolerant) : isTolerant_(isTolerant) {}

  void Add(Difference difference) { found_.push_back(std::move(difference)); }

  bool IsOver() const { return !isTolerant_ && !found_.empty(); }
  const std::vector<Difference>& All() const { return found_; }

 private:
  const bool isTolerant_;
  std::vector<Difference> found_;
};

}  // namespace capture
