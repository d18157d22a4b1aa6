#pragma once

#include <cstdint>
#include <iosfwd>

namespace pmscan {

// Prints how far the scan is: on a terminal one line that is written over, elsewhere a line for
// every tenth. There is at most one at a time: the module's progress callback carries no context.
class ProgressPrinter {
 public:
  ProgressPrinter(std::ostream& output, bool outputIsTerminal);
  ~ProgressPrinter();
  ProgressPrinter(const ProgressPrinter&) = delete;
  ProgressPrinter& operator=(const ProgressPrinter&) = delete;

  // The module's progress callback.
  static void OnProgress(std::uint32_t percent);

  void Show(std::uint32_t percent);

  // Leaves the line that is written over, so that other text can follow.
  void EndLine();

 private:
  std::ostream& out;
  const bool isTerminal;
  bool isLineOpen = false;
  std::uint32_t nextPercent = 0;
};

}  // namespace pmscan
