#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace pmddb832::fuzz {

// Memory of the host for the rows of a call, of exactly so many bytes: AddressSanitizer stops the
// program at the next one. It comes out of one block, so that no call allocates; where that holds
// too little, behind buffers of the calls around this one, it is empty.
class HostBuffer {
 public:
  static constexpr std::size_t kMostBytes =
      std::size_t{3} * 65280;  // of all that there are at a time

  explicit HostBuffer(std::size_t bytes);
  ~HostBuffer();
  HostBuffer(const HostBuffer&) = delete;
  HostBuffer& operator=(const HostBuffer&) = delete;

  std::span<std::uint8_t> Bytes() const { return bytes_; }

 private:
  std::span<std::uint8_t> bytes_;
};

}  // namespace pmddb832::fuzz
