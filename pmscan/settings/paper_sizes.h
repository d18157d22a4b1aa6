#pragma once

#include <string>
#include <string_view>

#include "pmscan/command_line/length.h"

namespace pmscan {

struct PaperSize {
  std::string_view name;
  Length width;
  Length height;
};

// Null when there is no paper of that name, in any case. Sizes are those of a sheet that stands
// upright.
const PaperSize* FindPaperSize(std::string_view name);

std::string PaperNames();  // "a3, a4, ..."

// The name that was probably meant; empty when none is near.
std::string_view NearestPaperName(std::string_view name);

}  // namespace pmscan
