#include "pmscan/progress.h"

#include <ostream>

namespace pmscan {
namespace {

ProgressPrinter* current = nullptr;
constexpr std::uint32_t kLineStep = 10;

}  // namespace

ProgressPrinter::ProgressPrinter(std::ostream& output, bool outputIsTerminal)
    : out(output), isTerminal(outputIsTerminal) {
  current = this;
}

ProgressPrinter::~ProgressPrinter() {
  EndLine();
  current = nullptr;
}

void ProgressPrinter::OnProgress(std::uint32_t percent) {
  if (current != nullptr) current->Show(percent);
}

void ProgressPrinter::Show(std::uint32_t percent) {
  if (percent < nextPercent) return;
  nextPercent = isTerminal ? percent + 1 : (percent / kLineStep + 1) * kLineStep;
  out << (isTerminal ? "\r" : "") << "Scanning: " << percent << " %";
  if (!isTerminal) out << "\n";
  out.flush();
  isLineOpen = isTerminal;
}

void ProgressPrinter::EndLine() {
  if (isLineOpen) out << "\n";
  isLineOpen = false;
}

}  // namespace pmscan
