#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace pmddb832 {

struct ScannerSettings;

inline constexpr std::string_view kUnknownModelName = "ORVAN  ";

// The model id that the host put into the settings, at most eight characters.
std::string_view HostModelId(const ScannerSettings& settings);

// Name under which a listed model is reported; empty when the id is not listed.
std::string_view ListedModelName(std::string_view modelId);

// Writes at most seven characters of `name` and a terminating zero to ScannerSettings::modelName.
void StoreModelName(ScannerSettings& settings, std::string_view name);

// Stores the scanner's product name, which ends at its first zero byte, in
// ScannerSettings::productNameReply: 16 characters, blank padded, terminated. The first character
// is never padded, so that an empty name stays empty. Returns the 16 characters stored.
std::string_view StoreProductName(ScannerSettings& settings, std::span<const std::uint8_t> name);

}  // namespace pmddb832
