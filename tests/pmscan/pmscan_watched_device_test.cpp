#include <doctest/doctest.h>

#include <array>

#include "pmscan/devices/watched_device.h"

namespace {

// Fails the transfers from a certain one on.
class Failing final : public pmddb832::RawDevice {
 public:
  std::int32_t RawReadData(void*, std::uint32_t*, void*) override { return Result(); }
  std::int32_t RawWriteData(void*, std::uint32_t, void*) override { return Result(); }

  int from = 0;

 private:
  std::int32_t Result() { return from-- > 0 ? 0 : static_cast<std::int32_t>(0x80070079); }
};

TEST_CASE("pmscan: the first transfer that fails is named, with the command before it") {
  Failing cable;
  cable.from = 2;
  pmscan::WatchedDevice watched(cable);
  std::array<std::uint8_t, 2> start{0x1C, 0x47};
  std::array<std::uint8_t, 14> header{};
  std::uint32_t count = 14;
  CHECK(watched.RawWriteData(start.data(), 2, nullptr) == 0);
  CHECK(watched.RawReadData(header.data(), &count, nullptr) == 0);
  CHECK(watched.FirstFailure().empty());
  CHECK(watched.RawReadData(header.data(), &count, nullptr) < 0);
  CHECK(watched.RawWriteData(header.data(), 3, nullptr) < 0);
  CHECK(watched.FirstFailure() ==
        "transfer 2, a read of 14 bytes behind FS G start transfer, failed with 0x80070079, it "
        "took too long");
}

TEST_CASE("pmscan: a transfer that fails before any command is named by its number") {
  Failing cable;
  pmscan::WatchedDevice watched(cable);
  std::array<std::uint8_t, 1> byte{0x18};
  CHECK(watched.RawWriteData(byte.data(), 1, nullptr) < 0);
  CHECK(watched.FirstFailure() ==
        "transfer 0, a write of 1 bytes, failed with 0x80070079, it took too long");
}

}  // namespace
