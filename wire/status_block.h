#pragma once

#include "wire/named_field.h"
#include "wire/status_bits.h"
#include "wire/value_names.h"
#include "wire/wire_block.h"

namespace pmddb832 {

// Reply to FS "F".
using StatusBlock = std::array<std::uint8_t, 16>;

namespace status {

inline constexpr Field<std::uint8_t, 0> kMain;
inline constexpr Field<std::uint8_t, 1> kFeeder;
inline constexpr Field<std::uint8_t, 2> kTransparency;

inline constexpr std::uint8_t kNotReady = 0x40;  // main status

inline constexpr std::array kMainNames{
    ValueName{kFatalError, "fatal error", true},
    ValueName{kNotReady, "not ready", true},
    ValueName{kWarmUp, "warming up", true},
};

inline constexpr std::array kFields{
    NamedFlags("main status", kMain, kMainNames),
    NamedFlags("feeder", kFeeder, names::kFeederStatus),
    NamedFlags("transparency unit", kTransparency, names::kTransparencyStatus),
};

}  // namespace status
}  // namespace pmddb832
