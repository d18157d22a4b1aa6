#include "platform/trace.h"
#include "standard/std_scan_cmd.h"

namespace pmddb832 {

std::uint32_t StdScanCmd::SendParam2(std::uint8_t letter, std::uint8_t parameter) {
  const TraceScope trace{"Scmdnt::SendParam2"};
  return SendEscBlock(letter, {&parameter, 1});
}

std::uint32_t StdScanCmd::SendParam3(std::uint8_t letter, std::uint8_t first, std::uint8_t second) {
  const TraceScope trace{"Scmdnt::SendParam3"};
  return SendEscBlock(letter, std::array{first, second});
}

std::uint32_t StdScanCmd::SendParam4(std::uint8_t letter, std::uint8_t prefix,
                                     std::span<const std::uint8_t> data) {
  const TraceScope trace{"Scmdnt::SendParam4"};
  return SendEscTable(letter, prefix, data);
}

std::uint32_t StdScanCmd::SendParamW3(std::uint8_t letter, std::uint16_t first,
                                      std::uint16_t second) {
  const TraceScope trace{"Scmdnt::SendParamW3"};
  std::array<std::uint8_t, 4> block;
  Put(block, Field<std::uint16_t, 0>{}, first);
  Put(block, Field<std::uint16_t, 2>{}, second);
  return SendEscBlock(letter, block);
}

std::uint32_t StdScanCmd::SendParamW5(std::uint8_t letter,
                                      const std::array<std::uint16_t, 4>& values) {
  const TraceScope trace{"Scmdnt::SendParamW5"};
  std::array<std::uint8_t, 8> block;
  Put(block, Field<std::uint16_t, 0>{}, values[0]);
  Put(block, Field<std::uint16_t, 2>{}, values[1]);
  Put(block, Field<std::uint16_t, 4>{}, values[2]);
  Put(block, Field<std::uint16_t, 6>{}, values[3]);
  return SendEscBlock(letter, block);
}

}  // namespace pmddb832
