#pragma once

#include <string>

#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"

namespace pmscan::tests {

// The code of the failure that the action ends with; 0 when it ends well.
template <typename Action>
std::uint32_t CodeOf(Action action) {
  try {
    action();
  } catch (const Failure& failure) {
    return failure.code;
  }
  return 0;
}

// The same with what is said: "64 There is no mode ..."; "accepted" when it ends well.
template <typename Action>
std::string RefusalOf(Action action) {
  try {
    action();
  } catch (const Failure& failure) {
    return std::to_string(failure.code) + " " + failure.what();
  }
  return "accepted";
}

}  // namespace pmscan::tests
