#pragma once

#include <cstdint>
#include <string_view>

#include "tests/transport/scripted_device.h"

namespace pmddb832::tests {

// Status bytes of the probe's reply.
inline constexpr std::uint8_t kAnswersExtended = 0x02;
inline constexpr std::uint8_t kStandardOnly = 0xFD;

// The probe: ESC "I" and a reply of `status`, the level characters and five bytes more.
void ScriptProbe(ScriptedDevice& device, std::uint8_t status, std::string_view level = "B8");

// A whole open of an extended scanner with a flatbed: probe, reset, identity and status.
void ScriptExtendedOpen(ScriptedDevice& device);

// An open up to a reset that the scanner refuses: the first step of each command set's own open.
// The standard set reports code 1 then, the extended set none.
void ScriptOpenWithRefusedReset(ScriptedDevice& device, std::uint8_t probeStatus);

}  // namespace pmddb832::tests
