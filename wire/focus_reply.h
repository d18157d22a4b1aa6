#pragma once

#include "wire/named_field.h"

// Reply to ESC "q", header first.
namespace pmddb832::focus_reply {

inline constexpr Field<std::uint8_t, 4> kOutcome;
inline constexpr Field<std::uint8_t, 5> kPosition;

inline constexpr std::uint8_t kNotFound = 0x01;

inline constexpr std::array kOutcomeNames{ValueName{kNotFound, "no focus found", true}};

inline constexpr std::array kFields{
    NamedFlags("outcome", kOutcome, kOutcomeNames),
    Named("focus position", kPosition, FieldShape::kPosition),
};

}  // namespace pmddb832::focus_reply
