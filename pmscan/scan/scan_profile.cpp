#include "pmscan/scan/scan_profile.h"

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string_view>
#include <system_error>

#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/file_name.h"
#include "pmscan/command_line/option_table.h"
#include "pmscan/encoders/byte_file.h"
#include "pmscan/report/error_codes.h"
#include "simulator/catalog/nearest_name.h"

namespace pmscan {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kExtension = ".json";

const OptionRow* FindRow(std::string_view name) {
  const auto* const row =
      std::find_if(kOptions.begin(), kOptions.end(), [&](const OptionRow& each) {
        return each.kind == OptionKind::kKept && LongName(each).substr(2) == name;
      });
  return row == kOptions.end() ? nullptr : row;
}

std::vector<std::string_view> KeptNames() {
  std::vector<std::string_view> names;
  for (const OptionRow& row : kOptions) {
    if (row.kind == OptionKind::kKept) names.push_back(LongName(row).substr(2));
  }
  return names;
}

// Ends what begins with that there is no such name: with the one that was probably meant, or with
// what else can be done.
std::string Suggestion(std::string_view name, const std::vector<std::string_view>& names,
                       const char* otherwise) {
  std::string text = simulator::SuggestName(name, names);
  if (text.empty()) text = otherwise;
  return text.ends_with('?') ? text : text + ".";
}

// A name that is a file's on every system, and stays in its folder.
std::filesystem::path FileOf(const std::filesystem::path& folder, const std::string& name) {
  const bool isOdd = std::any_of(name.begin(), name.end(), [](char letter) {
    return static_cast<unsigned char>(letter) < ' ' ||
           std::string_view("<>:\"/\\|?*").find(letter) != std::string_view::npos;
  });
  if (name.empty() || name.front() == '.' || isOdd) {
    throw Failure(kUsage, "\"" + name +
                              "\" cannot name a profile: the name becomes that of a file, without "
                              "any of < > : \" / \\ | ? * and without a dot in front.");
  }
  return folder / PathOf(name + std::string(kExtension));
}

[[noreturn]] void RefuseUnknown(const std::filesystem::path& folder, const std::string& name) {
  const std::vector<std::string> known = ProfileNames(folder);
  const std::string sentence = "There is no profile \"" + name + "\"";
  if (known.empty()) {
    throw Failure(kUsage, sentence + "; there is none yet: --save-profile makes one.");
  }
  throw Failure(kUsage, sentence + Suggestion(name, {known.begin(), known.end()},
                                              "; pmscan profiles lists those that there are"));
}

Json ToJson(const KeptOption& option) {
  const OptionRow& row = *FindRow(option.name);
  if (IsNumber(row)) return std::stol(option.value, nullptr, 0);
  return IsSwitch(row) ? Json(option.value != "false") : Json(option.value);
}

bool IsNumberFor(const OptionRow& row, const Json& value) {
  return row.least < 0 ? value.is_number_integer() : value.is_number_unsigned();
}

// What is wanted in place of the value; empty when it is of the option's kind.
std::string_view WantedInstead(const OptionRow& row, const Json& value) {
  if (IsNumber(row)) return IsNumberFor(row, value) ? "" : "a number";
  if (IsSwitch(row)) return value.is_boolean() ? "" : "true or false";
  return value.is_string() ? "" : "a text";
}

KeptOption FromJson(const std::string& file, const std::string& key, const Json& value) {
  const OptionRow* const row = FindRow(key);
  if (row == nullptr) {
    throw Failure(kProfile,
                  file + ": a profile has no \"" + key + "\"" +
                      Suggestion(key, KeptNames(), "; it has options of pmscan scan --help"));
  }
  const std::string wanted(WantedInstead(*row, value));
  if (!wanted.empty()) {
    throw Failure(kProfile,
                  file + ": \"" + key + "\" is " + wanted + ", not " + value.dump() + ".");
  }
  return {key, value.is_string() ? value.get<std::string>() : value.dump()};
}

Json ParseFile(std::istream& stream, const std::string& file) {
  try {
    Json document = Json::parse(stream);
    if (document.is_object()) return document;
  } catch (const Json::exception& error) {
    throw Failure(kProfile, file + ": " + error.what() + ".");
  }
  throw Failure(kProfile,
                file + ": a profile is one object of options, as in {\"mode\": \"grey\"}.");
}

}  // namespace

bool IsKept(const std::string& optionName) {
  return FindRow(optionName) != nullptr;
}

std::vector<KeptOption> LoadProfile(const std::filesystem::path& folder, const std::string& name) {
  const std::filesystem::path path = FileOf(folder, name);
  std::ifstream stream(path, std::ios::binary);
  if (!stream) RefuseUnknown(folder, name);
  const std::string file = Utf8(path);
  std::vector<KeptOption> options;
  const Json document = ParseFile(stream, file);
  for (const auto& [key, value] : document.items()) {
    options.push_back(FromJson(file, key, value));
  }
  return options;
}

std::vector<std::string> ProfileNames(const std::filesystem::path& folder) {
  std::vector<std::string> names;
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator(folder, ignored)) {
    if (entry.path().extension() == kExtension) names.push_back(Utf8(entry.path().stem()));
  }
  std::sort(names.begin(), names.end());
  return names;
}

void RemoveProfile(const std::filesystem::path& folder, const std::string& name) {
  const std::filesystem::path path = FileOf(folder, name);
  std::error_code reason;
  if (std::filesystem::remove(path, reason)) return;
  if (!reason) RefuseUnknown(folder, name);
  throw Failure(kProfile, Utf8(path) + " cannot be removed: " + reason.message() + ".");
}

std::string ProfileFile(const std::filesystem::path& folder, const std::string& name) {
  return Utf8(FileOf(folder, name));
}

void SaveProfile(const std::filesystem::path& folder, const std::string& name,
                 const std::vector<KeptOption>& options, bool mayOverwrite) {
  const std::filesystem::path path = FileOf(folder, name);
  std::error_code reason;
  if (!mayOverwrite && std::filesystem::exists(path, reason)) {
    throw Failure(kProfile,
                  "There is a profile \"" + name + "\" already; --overwrite replaces it.");
  }
  Json document = Json::object();
  for (const KeptOption& option : options) document[option.name] = ToJson(option);
  std::filesystem::create_directories(folder, reason);
  if (reason) {
    throw Failure(kProfile, Utf8(folder) + ": cannot make the folder: " + reason.message() + ".");
  }
  WriteWhole(path, Utf8(path), document.dump(2) + "\n", kProfile);
}

}  // namespace pmscan
