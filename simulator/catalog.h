#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/picture.h"
#include "simulator/scanner.h"

namespace simulator {

// A scanner by name: its family, "extended" or "standard", or "FAMILY:MODEL", with any number of
// "+DEFECT", "+DEFECT=VALUE" and "+pages=N" behind it, as in
// "extended:RV7000H+pages=3+jam-at-line=200". A document feeder holds one copy of the picture, or
// N. Throws std::invalid_argument that says what is wrong and what names exist.
std::unique_ptr<Scanner> MakeScanner(std::string_view name, Picture onBed);

// Every name without defects; of each family the plain one first.
std::vector<std::string> ScannerNames();

}  // namespace simulator
