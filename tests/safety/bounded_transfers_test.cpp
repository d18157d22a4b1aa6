#include <doctest/doctest.h>

#include <algorithm>
#include <functional>
#include <utility>

#include "simulator/catalog/catalog.h"
#include "tests/scans/whole_scan.h"
#include "transport/raw_device.h"

// Scanners that never come to an end: every call gives up after as many transfers as follow from
// what it was asked for.

using namespace pmddb832;
using namespace pmddb832::tests;

namespace {

constexpr std::size_t kLines = 48;
// A set-up with all of its tables takes fewer; so does the longest reply to the probe.
constexpr std::size_t kCommandTransfers = 300;
// Each line a block of its own: header, data, answer.
constexpr std::size_t kLineTransfers = 3;

// Passes transfers on to a scanner until it is stuck. From then on it acknowledges everything and
// answers for ever: STX, and behind it the same byte over and over.
class StuckDevice final : public RawDevice {
 public:
  explicit StuckDevice(StillImageDevice& sound) : sound_(sound) {}

  void Stick(std::uint8_t with) {
    stuck_ = true;
    answer_ = with;
  }
  std::size_t CountAndReset() { return std::exchange(transfers_, 0); }

  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) override {
    ++transfers_;
    if (!stuck_) return sound_.RawReadData(buffer, byteCount, overlapped);
    auto* const bytes = static_cast<std::uint8_t*>(buffer);
    std::fill_n(bytes, *byteCount, answer_);
    if (*byteCount > 0) bytes[0] = *byteCount == 1 ? kAck : kStx;
    return 0;
  }
  std::int32_t RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) override {
    ++transfers_;
    return stuck_ ? 0 : sound_.RawWriteData(buffer, byteCount, overlapped);
  }

 private:
  static constexpr std::uint8_t kAck = 0x06;
  static constexpr std::uint8_t kStx = 0x02;

  StillImageDevice& sound_;
  bool stuck_ = false;
  std::uint8_t answer_ = 0;
  std::size_t transfers_ = 0;
};

struct Desk {
  explicit Desk(std::string_view name)
      : scanner(simulator::MakeScanner(name, ColourPicture(64, 48))),
        device(*scanner),
        host(*scanner) {
    host.settings.deviceInterface = &device;
  }
  ~Desk() { host.settings.deviceInterface = nullptr; }

  // Calls of which none is for image data.
  void CheckCommands() {
    std::uint32_t size = 0;
    const ModuleUnderTest& module = host.module;
    for (const std::function<void()>& call : std::initializer_list<std::function<void()>>{
             [&] { module->GetOptionStatus(0); }, [&] { module->GetOptionStatus(1); },
             [&] { module->GetOptionStatus(2); },
             [&] { module->GetScanPaperSize(2, &size, &size); }, [&] { module->EnableOption(1); },
             [&] { module->Feed(nullptr); }, [&] { module->Eject(nullptr); },
             [&] { module->Reset(); }, [&] { module->AbortScan(); },
             [&] { module->CloseScanner(); }}) {
      call();
      CHECK(device.CountAndReset() <= kCommandTransfers);
    }
  }

  void CheckBands() {
    ScannedImage image;
    image.rowBytes = host.SetUp(5).lineBytes;
    CHECK(device.CountAndReset() == 0);
    for (int band = 0; band < 3; ++band) {
      host.AcquireBand(192 * kLines, image);
      CHECK(device.CountAndReset() <= kCommandTransfers + kLines * kLineTransfers);
    }
  }

  std::unique_ptr<simulator::Scanner> scanner;
  StuckDevice device;
  WholeScan host;
};

// Sticks the device with every byte value, after the open or after the first band as well.
void CheckStuck(bool scanning) {
  for (const std::string_view name : {"extended", "standard", "standard:HK300",
                                      "extended:RV7000H+pages=9", "standard:QM5500+pages=9"}) {
    for (int answer = 0; answer < 256; ++answer) {
      CAPTURE(name);
      CAPTURE(answer);
      Desk desk(name);
      REQUIRE(desk.host.Open());
      ScannedImage image;
      if (scanning) image.rowBytes = desk.host.SetUp(5).lineBytes;
      if (scanning) desk.host.AcquireBand(192 * 7, image);
      desk.device.CountAndReset();
      desk.device.Stick(static_cast<std::uint8_t>(answer));
      if (scanning) desk.host.AcquireBand(192 * 20, image);
      CHECK(desk.device.CountAndReset() <= 20 * kLineTransfers);
      desk.CheckBands();
      desk.CheckCommands();
    }
  }
}

}  // namespace

TEST_CASE("a scanner that gives one answer for ever is given up on by an open") {
  for (int answer = 0; answer < 256; ++answer) {
    CAPTURE(answer);
    Desk desk("extended");
    desk.device.Stick(static_cast<std::uint8_t>(answer));
    desk.host.Open();
    CHECK(desk.device.CountAndReset() <= kCommandTransfers);
    desk.CheckCommands();
  }
}

TEST_CASE("a scanner that gives one answer for ever behind its open is given up on by every call") {
  CheckStuck(false);
}

TEST_CASE("a scanner that gives one answer for ever behind a first band is given up on") {
  CheckStuck(true);
}

TEST_CASE("a scanner that warms up or is busy for ever is asked once by each acquisition") {
  for (const std::string_view name : {"extended+warm-up=4000000000", "standard+warm-up=4000000000",
                                      "extended+not-ready", "standard+not-ready"}) {
    CAPTURE(name);
    Desk desk(name);
    desk.host.Open();
    desk.device.CountAndReset();
    desk.CheckBands();
  }
}
