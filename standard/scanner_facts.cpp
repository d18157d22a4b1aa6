#include "standard/scanner_facts.h"

namespace pmddb832 {
namespace {

AreaSize Scaled(const StdScannerFacts& facts, std::uint16_t width, std::uint16_t height) {
  const std::uint32_t factor = facts.modelQuirk != 0 ? 2 : 1;
  return {factor * width, factor * height};
}

}  // namespace

AreaSize FeederArea(const StatusReply& reply, const StdScannerFacts& facts) {
  return Scaled(facts, Get(reply, status_reply::kFeederWidth),
                Get(reply, status_reply::kFeederHeight));
}

AreaSize TransparencyArea(const StatusReply& reply, const StdScannerFacts& facts) {
  return Scaled(facts, Get(reply, status_reply::kTransparencyWidth),
                Get(reply, status_reply::kTransparencyHeight));
}

}  // namespace pmddb832
