#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "wire/wire_block.h"

// A conversation as a fuzz target's input spells it: the scanner that answers, the host that calls,
// its calls in their order, and the faults, each a place where the scanner departs from its
// protocol. Every input spells one: bytes that are not there are 0, and every number counts modulo
// what there is to choose from.
namespace pmddb832::fuzz {

enum class Family : std::uint8_t { kStandard, kExtended };

// What the scanner says of itself.
using ScannerBlock = std::array<std::uint8_t, 32>;

namespace scanner {

inline constexpr Field<std::uint8_t, 0> kLevel;    // of kLevels
inline constexpr Field<std::uint8_t, 1> kProduct;  // of kProductNames
inline constexpr Field<std::uint8_t, 2> kMainStatus;
inline constexpr Field<std::uint8_t, 3> kFeederStatus;
inline constexpr Field<std::uint8_t, 4> kTransparencyStatus;
inline constexpr Field<std::uint8_t, 5> kFeederFlags;
inline constexpr Field<std::uint8_t, 6> kFocusOutcome;
inline constexpr Field<std::uint8_t, 7> kFocusPosition;
inline constexpr Field<std::uint8_t, 8> kStartStatus;
inline constexpr Field<std::uint8_t, 9> kResolutionCount;  // less one
inline constexpr Field<std::uint16_t, 10> kMinimumResolution;
inline constexpr Field<std::uint16_t, 12> kResolution;
inline constexpr Field<std::uint16_t, 14> kMaximumResolution;
inline constexpr Field<std::uint16_t, 16> kFlatbedWidth;
inline constexpr Field<std::uint16_t, 18> kFlatbedHeight;
inline constexpr Field<std::uint16_t, 20> kFeederWidth;
inline constexpr Field<std::uint16_t, 22> kFeederHeight;
inline constexpr Field<std::uint16_t, 24> kTransparencyWidth;
inline constexpr Field<std::uint16_t, 26> kTransparencyHeight;

}  // namespace scanner

// What surrounds the module, and what the host wants scanned.
using HostBlock = std::array<std::uint8_t, 40>;

namespace host {

inline constexpr Field<std::uint8_t, 0> kFlags;
inline constexpr Field<std::uint8_t, 1> kSystem;       // of kSystems
inline constexpr Field<std::uint8_t, 2> kHeapBlocks;   // granted, and 1; 0 for all
inline constexpr Field<std::uint8_t, 3> kAllocations;  // likewise
inline constexpr Field<std::uint8_t, 4> kModel;        // of kModelIds
inline constexpr Field<std::uint8_t, 5> kPixelType;
inline constexpr Field<std::uint16_t, 6> kWidth;
inline constexpr Field<std::uint16_t, 8> kHeight;
inline constexpr Field<std::uint16_t, 10> kLeft;
inline constexpr Field<std::uint16_t, 12> kTop;
inline constexpr Field<std::uint16_t, 14> kOriginX;
inline constexpr Field<std::uint16_t, 16> kOriginY;
inline constexpr Field<std::uint16_t, 18> kResolution;
inline constexpr Field<std::uint16_t, 20> kZoom;
inline constexpr Field<std::uint16_t, 22> kThreshold;
inline constexpr Field<std::uint16_t, 24> kGamma;
inline constexpr Field<std::uint8_t, 26> kScanFlags;
inline constexpr Field<std::uint8_t, 27> kInvertMono;
inline constexpr Field<std::uint8_t, 28> kScanSource;
inline constexpr Field<std::uint8_t, 29> kParamG;
inline constexpr Field<std::uint8_t, 30> kDropoutChannel;
inline constexpr Field<std::uint8_t, 31> kWhitePadding;
inline constexpr Field<std::uint8_t, 32> kHalftone;  // row, and 1
inline constexpr Field<std::uint8_t, 33> kAltColorMode;
inline constexpr Field<std::uint8_t, 34> kCustomGammaCode;
inline constexpr Field<std::uint8_t, 35> kOptionParam;

// kFlags
inline constexpr std::uint8_t kHasLog = 0x01;  // for an open before the first
inline constexpr std::uint8_t kHasWindow = 0x02;
inline constexpr std::uint8_t kStaysClosed = 0x04;  // opens nothing before its calls

}  // namespace host

// A call of the host: a row of its table, and arguments.
using HostCall = std::array<std::uint8_t, 6>;

namespace host_call {

inline constexpr Field<std::uint8_t, 0> kWhat;
inline constexpr Field<std::uint8_t, 1> kArgument;
inline constexpr Field<std::uint32_t, 2> kValue;

}  // namespace host_call

// When a fault may come: in a transfer, or as a reply is made.
enum class Moment : std::uint8_t {
  kWrite,
  kRead,
  kAcknowledge,
  kLevel,
  kProduct,
  kStatus,
  kCondition,
  kFocus,
  kIdentity,
  kTransferHeader,
  kBlockHeader,
  kBlock,
  kBlockAnswer,  // the host acknowledges or cancels
};
inline constexpr std::size_t kMoments = 13;

// What comes then. In a transfer that has no reply, the transfer fails in place of the first three.
enum class FaultKind : std::uint8_t {
  kByte,        // the byte at the place has the value
  kWord,        // so have two
  kGarbage,     // from the place on there are the image's bytes
  kFailure,     // a transfer fails: this one, or as many reads later as the place says
  kCallWithin,  // the host makes its next call out of the transfer
  kGone,        // this and every further transfer fails
};
inline constexpr std::size_t kFaultKinds = 6;

using Fault = std::array<std::uint8_t, 6>;

namespace fault {

inline constexpr Field<std::uint8_t, 0> kMoment;
inline constexpr Field<std::uint8_t, 1> kSkipped;  // moments of that kind that pass before
inline constexpr Field<std::uint8_t, 2> kKind;
inline constexpr Field<std::uint8_t, 3> kPlace;  // in the reply; from the end of a block
inline constexpr Field<std::uint16_t, 4> kValue;

}  // namespace fault

// A list with room for `most`.
template <class T, std::size_t most>
struct ShortList {
  std::array<T, most> items{};
  std::size_t count = 0;

  // Items are added and inserted only while there is room.
  void Add(const T& item) { items[count++] = item; }
  // In front of the item at the place, or behind all of them.
  void Insert(std::size_t place, const T& item) {
    const auto at = items.begin() + static_cast<std::ptrdiff_t>(place);
    const auto end = items.begin() + static_cast<std::ptrdiff_t>(count++);
    std::move_backward(at, end, end + 1);
    *at = item;
  }
  std::span<T> All() { return std::span{items}.first(count); }
  std::span<const T> All() const { return std::span{items}.first(count); }
};

struct Conversation {
  ScannerBlock scanner{};
  HostBlock host{};
  ShortList<HostCall, 24> calls;
  ShortList<Fault, 12> faults;
  ShortList<std::uint8_t, 64> image;  // begins each block and replaces what is garbled
};

inline constexpr std::size_t kLongestConversation =
    sizeof(ScannerBlock) + sizeof(HostBlock) + 2 + 24 * sizeof(HostCall) + 12 * sizeof(Fault) + 64;

Conversation ReadConversation(std::span<const std::uint8_t> bytes);

// Returns how many bytes it wrote, zeros at the end left out. `input` has room for
// kLongestConversation bytes.
std::size_t WriteConversation(const Conversation& conversation, std::span<std::uint8_t> input);

}  // namespace pmddb832::fuzz
