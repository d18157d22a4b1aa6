#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "simulator/device/scanner.h"
#include "simulator/extended/extended_scanner.h"
#include "simulator/page/picture.h"
#include "simulator/standard/standard_scanner.h"

namespace simulator {

// A scanner of either family, described.
using ScannerConfig = std::variant<ExtendedScannerConfig, StandardScannerConfig>;

// A scanner by name, in any case: its family, "extended" or "standard", or "FAMILY:MODEL", with any
// number of
// "+DEFECT", "+DEFECT=VALUE" and "+pages=N" behind it, as in
// "extended:RV7000H+pages=3+jam-at-line=200". A document feeder holds one copy of the picture, or
// N. Throws std::invalid_argument that says what is wrong and what was probably meant.
std::unique_ptr<Scanner> MakeScanner(std::string_view name, Picture onBed);

// The scanner that a name without "+" stands for: what it is and has, with no defects, no paper in
// its feeder, and nothing on its bed. Throws as MakeScanner does.
ScannerConfig ConfigOf(std::string_view name);

// The model id in a scanner's name, as the model table has it; empty when there is none, or no such
// model: "extended:qm2700+pages=3" gives "QM2700".
std::string ModelIdOf(std::string_view name);

// What the scanners of both families have.
Equipment& EquipmentOf(ScannerConfig& config);

std::unique_ptr<Scanner> MakeScanner(ScannerConfig config);

// Every name without defects; of each family the plain one first.
std::vector<std::string> ScannerNames();

}  // namespace simulator
