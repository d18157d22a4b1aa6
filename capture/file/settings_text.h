#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "capture/file/capture.h"
#include "interface/scanner_settings.h"

namespace capture {

// How the value of a member of the settings record is written.
enum class ValueForm {
  kBytes,     // rows of bytes
  kUnsigned,  // a number without sign
  kSigned,
  kReal,
  kText,     // in quotes, up to the terminating zero
  kPointer,  // never: it means nothing to another process
};

// Null when the record has no such member.
const pmddb832::SettingsField* FindField(std::string_view name);

ValueForm FormOf(const pmddb832::SettingsField& field);

// The member at the offset; the one in front of it when none begins there.
const pmddb832::SettingsField& FieldAt(std::uint32_t offset);

// The new value as a number or a text. Empty when the form is kBytes, or when the text would not
// give the same bytes back.
std::string ValueText(const SettingsChange& change);

// The bytes of a member from ValueText's text. Nothing when the text is no value of that member.
std::optional<std::vector<std::uint8_t>> ParseValue(const pmddb832::SettingsField& field,
                                                    const std::string& text);

// What ParseValue takes: "a number from 0 to 65535".
std::string ExpectedValue(const pmddb832::SettingsField& field);

// The change that makes each member of `before` that of `after`, in the order of the record.
std::vector<SettingsChange> Compare(const pmddb832::ScannerSettings& before,
                                    const pmddb832::ScannerSettings& after, bool byModule);

// Makes the change in the record. It lies within the record and touches no pointer.
void Apply(const SettingsChange& change, pmddb832::ScannerSettings& settings);

}  // namespace capture
