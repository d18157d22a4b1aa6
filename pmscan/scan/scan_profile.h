#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace pmscan {

// An option of a scan as it stands on the command line; `value` is "true" or "false" for one that
// takes none there.
struct KeptOption {
  std::string name;  // without the dashes
  std::string value;

  bool operator==(const KeptOption&) const = default;
};

// Whether profiles keep the option of that name.
bool IsKept(const std::string& optionName);

// Reads FOLDER/NAME.json. Throws Failure(kUsage) that lists the profiles in the folder when there
// is none of that name, Failure(kProfile) when the file is not one of ours.
std::vector<KeptOption> LoadProfile(const std::filesystem::path& folder, const std::string& name);

// Names of the profiles in the folder, in their order.
std::vector<std::string> ProfileNames(const std::filesystem::path& folder);

// Throws Failure(kUsage) when there is none of that name, Failure(kProfile) when it stays.
void RemoveProfile(const std::filesystem::path& folder, const std::string& name);

// The file of a profile, for messages; it need not be there.
std::string ProfileFile(const std::filesystem::path& folder, const std::string& name);

// Writes FOLDER/NAME.json, and makes the folder where it is missing. Throws Failure(kUsage) when
// the name cannot be that of a file, Failure(kProfile) when it is taken and may not be replaced, or
// cannot be written.
void SaveProfile(const std::filesystem::path& folder, const std::string& name,
                 const std::vector<KeptOption>& options, bool mayOverwrite);

}  // namespace pmscan
