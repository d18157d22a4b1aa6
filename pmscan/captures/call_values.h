#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "capture/file/capture.h"
#include "transport/acquisition_records.h"

namespace pmscan {

// The numbers of a call as a capture holds them, by the names of the host's records.
std::vector<capture::Value> ValuesOf(const pmddb832::AcquisitionSetup& setup);
std::vector<capture::Value> ValuesOf(const pmddb832::AcquisitionBand& band);

// Of what the host hands over only the values that are not 0: the others are understood.
std::vector<capture::Value> WithoutZeros(const std::vector<capture::Value>& values);

// The value of that name, 0 when there is none.
std::uint32_t ValueOf(const std::vector<capture::Value>& values, const std::string& name);

// CRC-32 of the lines that the call delivered; none when it failed.
std::optional<std::uint32_t> LinesChecksum(const std::uint8_t* buffer, std::uint32_t bufferBytes,
                                           const pmddb832::AcquisitionBand& band);

}  // namespace pmscan
