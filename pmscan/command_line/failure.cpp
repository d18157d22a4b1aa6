#include "pmscan/command_line/failure.h"

#include "pmscan/report/error_codes.h"

namespace pmscan {

std::string Describe(const Failure& failure) {
  const ErrorCode& row = FindErrorCode(failure.code);
  const std::string detail = failure.what();
  std::string text = "pmscan: error " + std::to_string(failure.code) + ": ";
  text.append(row.meaning).append("\n");
  if (!detail.empty()) text += "  " + detail + "\n";
  return text.append("  ").append(row.whatToDo).append("\n");
}

}  // namespace pmscan
