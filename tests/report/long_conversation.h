#pragma once

#include <cstddef>

#include "tests/capture/sample_conversation.h"

namespace pmscan::tests {

// A scan of at least so many transfers with extended commands, in bands of seven blocks of three
// lines of 100 bytes; in front of every thousandth band the scanner makes the host wait for two
// seconds, and the last block tells of an error.
inline capture::Capture LongConversation(std::size_t transfers) {
  using pmddb832::tests::Bytes;
  using pmddb832::tests::Joined;
  using pmddb832::tests::Repeated;
  constexpr std::size_t kTransfersInBand = 14;
  const auto bands = static_cast<std::uint32_t>(transfers / kTransfersInBand + 1);
  const std::uint32_t blocks = bands * 7;
  const std::uint32_t lines = blocks * 3 + 3;
  Bytes parameters = pmddb832::tests::SampleParameters();
  for (std::size_t i = 0; i < 4; ++i) {
    parameters[20 + i] = static_cast<std::uint8_t>(lines >> 8 * i);
  }
  parameters[28] = 3;
  Bytes header{0x02, 0x00, 0x2C, 0x01, 0, 0, 0, 0, 0, 0, 0x2C, 0x01, 0, 0};
  for (std::size_t i = 0; i < 4; ++i) header[6 + i] = static_cast<std::uint8_t>(blocks >> 8 * i);
  pmddb832::tests::SampleConversation sample;
  sample.Call("PMAcquireImage", {{"bufferBytes", 2100}});
  sample.Command({0x1C, 'W'}, parameters).Write({0x1C, 'G'}).Read(header);
  for (std::uint32_t band = 0; band < bands; ++band) {
    if (band != 0) sample.Call("PMAcquireImage", {{"bufferBytes", 2100}});
    if (band % 1000 == 999) sample.Wait(2'000'000);
    for (std::uint32_t block = 0; block < 7; ++block) sample.ReadImage(301, 0).Write({0x06});
    sample.Return({{"status", 1}, {"done", 0}, {"lines", 21}, {"bytes", 2100}});
  }
  sample.Call("PMAcquireImage", {{"bufferBytes", 2100}}).Read(Joined(Repeated(300, 0x55), {0x80}));
  return sample.Return({{"status", 2}}).capture;
}

}  // namespace pmscan::tests
