#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "pmsim/served_device.h"

namespace pmsim_test {

using Bytes = std::vector<std::uint8_t>;

// One grey tone, 16 by 8 pixels at 100 dots per inch, whatever the file.
inline simulator::Picture Grey(const std::string&) {
  return {16, 8, 100, std::vector<std::uint16_t>(3 * 16 * 8, 0x8080)};
}

inline pmsim::Surroundings System() {
  return {PMDDB832_PROFILES, Grey};
}

// With that tone on the bed, for the simulator's own page takes a while to draw.
inline pmsim::DeviceRequest WithGrey(pmsim::DeviceRequest request) {
  if (request.device.starts_with("sim:")) request.original = "grey.png";
  return request;
}

// A device as a host has it.
struct Host {
  explicit Host(const pmsim::DeviceRequest& request) : served(WithGrey(request), System()) {}

  std::int32_t Write(Bytes bytes) {
    return served.Device().RawWriteData(bytes.data(), static_cast<std::uint32_t>(bytes.size()),
                                        nullptr);
  }
  // The bytes that a read delivers; `result` is how it went.
  Bytes Read(std::uint32_t count) {
    Bytes buffer(count, 0xEE);
    result = served.Device().RawReadData(buffer.data(), &count, nullptr);
    buffer.resize(count);
    return buffer;
  }

  pmsim::ServedDevice served;
  std::int32_t result = 0;
};

}  // namespace pmsim_test
