#include "pmscan/command_line/profiles_command.h"

#include <ostream>

#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/scan/scan_profile.h"

namespace pmscan {
namespace {

void List(const std::filesystem::path& folder, std::ostream& output) {
  const std::vector<std::string> names = ProfileNames(folder);
  if (names.empty()) output << "There is none yet: pmscan scan --save-profile NAME makes one.\n";
  for (const std::string& name : names) output << name + "\n";
}

void Show(const std::filesystem::path& folder, const std::string& name, std::ostream& output) {
  for (const KeptOption& option : LoadProfile(folder, name)) {
    output << "--" + option.name + "=" + option.value + "\n";
  }
}

}  // namespace

void RunProfilesCommand(const Options& options, const std::filesystem::path& folder,
                        std::ostream& output) {
  const std::string& name = options.shownProfile;
  if (options.removesProfile && name.empty()) {
    throw Failure(kUsage,
                  "--remove needs the name of a profile, as in: pmscan profiles NAME --remove");
  }
  if (name.empty()) return List(folder, output);
  if (!options.removesProfile) return Show(folder, name, output);
  RemoveProfile(folder, name);
  output << "The profile \"" + name + "\" is removed.\n";
}

}  // namespace pmscan
