#pragma once

#include <cstdint>
#include <vector>

#include "simulator/catalog/models.h"
#include "simulator/faults/defects.h"
#include "simulator/page/picture.h"

namespace simulator {

// Habits of a firmware of either family that a driver has to live with; none is a fault.
struct Manners {
  std::uint32_t refusedTransfers = 0;  // so many starts are refused before one is accepted
  std::uint8_t focusFound = 0x48;      // focus position byte that automatic focus reports
  bool focusFails = false;             // automatic focus reports that it found none
};

// What lies on and in a scanner of either family, and what is wrong with it.
struct Equipment {
  OptionUnit optionUnit = OptionUnit::kNone;
  std::vector<Picture> feederPages;  // the first is scanned first
  // How often each of them lies there, one behind the other; once where nothing is said.
  std::vector<std::uint32_t> feederCopies;
  Picture onBed;  // lies in the transparency unit as well
  Defects defects;
};

}  // namespace simulator
