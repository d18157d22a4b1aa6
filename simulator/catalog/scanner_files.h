#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace simulator {

// Whether the name of a simulated scanner is that of a file: "office.json".
bool IsScannerFileName(const std::string& name);

// The file of a scanner: the name itself, or where no such file is, one of that name in `folder`,
// if it is there. UTF-8.
std::string FindScannerFile(const std::string& name, const std::filesystem::path& folder);

// "; did you mean "office.json"?" with the scanner file, in the folder that the name is in or in
// `folder`, that was probably meant; empty when none was. UTF-8.
std::string SuggestScannerFile(const std::string& name, const std::filesystem::path& folder);

// Names of the scanner files in a folder, in their order; none when it cannot be read. UTF-8.
std::vector<std::string> ScannerFileNames(const std::filesystem::path& folder);

}  // namespace simulator
