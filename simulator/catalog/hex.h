#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace simulator {

// "1C 46"; long blocks are cut: "1B 7A 52 00 00 00 00 00 ... (257 bytes)".
std::string Hex(std::span<const std::uint8_t> bytes);

}  // namespace simulator
