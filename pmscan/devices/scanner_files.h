#pragma once

#include <string>
#include <vector>

namespace pmscan {

// Whether the simulator's name of a device is that of a file: "office.json".
bool IsScannerFileName(const std::string& simulatorName);

// The file of a scanner: the name itself, or where no such file is, one of that name in the folder
// "profiles" beside this program, if that is there. UTF-8.
std::string ScannerFile(const std::string& simulatorName);

// Names of the scanner files in that folder, as --device has them behind "sim:", in their order.
std::vector<std::string> ScannerFileNames();

}  // namespace pmscan
