#pragma once

#include <array>

#include "wire/document_source.h"
#include "wire/error_codes.h"
#include "wire/named_field.h"
#include "wire/protocol_bytes.h"
#include "wire/status_bits.h"

// Names of values that the blocks and commands of both families share.
namespace pmddb832::names {

inline constexpr std::array kOnOff{ValueName{0, "off"}, ValueName{1, "on"}};

inline constexpr std::array kOptionUnit{ValueName{0, "off, flatbed"}, ValueName{1, "on"},
                                        ValueName{2, "on, second side"}};

inline constexpr std::array kColorModes{ValueName{0x00, "grey"},
                                        ValueName{0x01, "colour planes, plain"},
                                        ValueName{0x02, "colour planes"},
                                        ValueName{0x10, "channel 1"},
                                        ValueName{0x13, "colour"},
                                        ValueName{0x20, "channel 2"},
                                        ValueName{0x23, "colour, blue first"},
                                        ValueName{0x30, "channel 3"}};

// Of the codes that PMGetScanError answers. After a call that succeeded there is none.
inline constexpr auto kErrorCodes = [] {
  std::array<ValueName, kErrorWords.size()> names{};
  for (std::size_t i = 0; i < names.size(); ++i) {
    const ErrorWords& row = kErrorWords[i];
    names[i] = {row.code, row.name, row.code != kNoError};
  }
  return names;
}();

inline constexpr std::array kDocumentSources{ValueName{kFeeder, "document feeder"},
                                             ValueName{kTransparencyUnit, "transparency unit"},
                                             ValueName{kFlatbed, "flatbed"}};

inline constexpr std::array kStx{ValueName{pmddb832::kStx, "STX"}};

// Of the single bytes that host and scanner exchange.
inline constexpr std::array kControlBytes{
    ValueName{kAck, "ACK"},           ValueName{kFf, "FF eject the page"},
    ValueName{kNak, "NAK", true},     ValueName{kCan, "CAN cancel"},
    ValueName{kEm, "EM feed a page"},
};

inline constexpr std::array kFeederStatus{
    ValueName{status::kInstalled, "installed"},    ValueName{status::kErrorSummary, "error", true},
    ValueName{status::kEmpty, "empty", true},      ValueName{status::kOpen, "cover open", true},
    ValueName{status::kJammed, "paper jam", true},
};

inline constexpr std::array kTransparencyStatus{
    ValueName{status::kInstalled, "installed"},
    ValueName{status::kErrorSummary, "error", true},
    ValueName{status::kJammed, "fault", true},
};

}  // namespace pmddb832::names
