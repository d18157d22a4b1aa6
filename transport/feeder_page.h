#pragma once

#include <cstdint>

namespace pmddb832 {

// The page in the document feeder.
enum class FeederPage : std::uint8_t {
  kNone,     // nothing fed, nothing scanned; left by a feed and by the start of a scan
  kFed,      // fed and not scanned yet; left by the start of a scan and by a reset
  kScanned,  // a scan was started since the last feed, eject or reset; left by those three
};

constexpr bool MayFeed(FeederPage page) {
  return page != FeederPage::kFed;
}

constexpr bool MayEject(FeederPage page) {
  return page == FeederPage::kScanned;
}

}  // namespace pmddb832
