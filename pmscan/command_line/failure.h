#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace pmscan {

// Ends the command. `code` is a row of kErrorCodes, or a number of the module that is none.
class Failure : public std::runtime_error {
 public:
  // `detail` says what was expected and what came; empty when the code says it all.
  explicit Failure(std::uint32_t failureCode, const std::string& detail = {})
      : std::runtime_error(detail), code(failureCode) {}

  const std::uint32_t code;
};

// The paragraph for the user: number and meaning, detail, what to do. Ends with a line feed.
std::string Describe(const Failure& failure);

}  // namespace pmscan
