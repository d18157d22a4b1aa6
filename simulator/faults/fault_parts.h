#pragma once

#include <string_view>

namespace simulator {

// Whether a driver sends the command, named as in FaultPlace.
bool IsSent(std::string_view command);

// Whether a command that is sent has such a transfer: "command", "reply", "data", "parameters",
// "result", "block" or "answer".
bool HasPart(std::string_view command, std::string_view part);

}  // namespace simulator
