#include "fuzz/conversation_mutator.h"

#include <algorithm>
#include <array>
#include <random>

#include "fuzz/host_calls.h"

#if defined(__has_feature)
#if __has_feature(memory_sanitizer)
#define PMDDB832_HAS_MEMORY_CHECK 1
#include <sanitizer/msan_interface.h>
#endif
#endif

// libFuzzer's own changes.
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace pmddb832::fuzz {
namespace {

// MemorySanitizer does not see what libFuzzer writes.
void NoteAsWritten([[maybe_unused]] std::span<const std::uint8_t> bytes) {
#ifdef PMDDB832_HAS_MEMORY_CHECK
  __msan_unpoison(bytes.data(), bytes.size());
#endif
}

std::size_t MutateBytes(std::span<std::uint8_t> bytes, std::size_t size) {
  const std::size_t changed = LLVMFuzzerMutate(bytes.data(), size, bytes.size());
  NoteAsWritten(bytes.first(changed));
  return changed;
}

constexpr std::array<std::uint16_t, 32> kTellingWords{
    0,      1,      2,      3,      7,      8,      9,      16,     17,     40,    41,
    100,    150,    200,    300,    301,    600,    1200,   2400,   4095,   4096,  10880,
    0x2AA0, 0x3FC0, 0x7FF0, 0x7FF1, 0x7FFF, 0x8000, 0xFF00, 0xFFF8, 0xFFFE, 0xFFFF};

constexpr std::array<std::uint32_t, 16> kTellingValues{
    0,     1,     2,     3,          8,          255,        65279,      65280,
    65281, 65290, 72324, 0x7FF87FF8, 0x80000000, 0xFFFFFFFF, 0x7E007E00, 0xFE00FE00};

// Faults lie in wait for what a scanner of the family says.
constexpr std::array kExtendedMoments{
    Moment::kWrite,  Moment::kRead,       Moment::kAcknowledge, Moment::kLevel,
    Moment::kStatus, Moment::kFocus,      Moment::kIdentity,    Moment::kTransferHeader,
    Moment::kBlock,  Moment::kBlockAnswer};
constexpr std::array kStandardMoments{Moment::kWrite,     Moment::kRead,       Moment::kAcknowledge,
                                      Moment::kLevel,     Moment::kProduct,    Moment::kStatus,
                                      Moment::kCondition, Moment::kFocus,      Moment::kBlockHeader,
                                      Moment::kBlock,     Moment::kBlockAnswer};

class Mutator {
 public:
  Mutator(Family family, Conversation& conversation, unsigned seed)
      : family_(family), conversation_(conversation), random_(seed) {}

  void Run() {
    for (std::size_t i = 1 + Below(3); i > 0; --i) ChangeSomething();
  }

 private:
  std::size_t Below(std::size_t limit) { return random_() % limit; }
  std::uint8_t Byte() { return static_cast<std::uint8_t>(random_()); }
  template <class T, std::size_t size>
  T AnyOf(const std::array<T, size>& choices) {
    return choices[Below(size)];
  }

  void ChangeSomething();
  template <std::size_t size>
  void ChangeBlock(std::array<std::uint8_t, size>& block);
  template <class T, std::size_t most, class Make>
  void ChangeList(ShortList<T, most>& list, Make make);
  void ChangeImage();
  HostCall MakeHostCall();
  Fault MakeFault();

  const Family family_;
  Conversation& conversation_;
  std::minstd_rand random_;
};

void Mutator::ChangeSomething() {
  switch (Below(8)) {
    case 0:
    case 1:
      return ChangeBlock(conversation_.scanner);
    case 2:
    case 3:
      return ChangeBlock(conversation_.host);
    case 4:
    case 5:
      return ChangeList(conversation_.calls, [this] { return MakeHostCall(); });
    case 6:
      return ChangeList(conversation_.faults, [this] { return MakeFault(); });
    default:
      return ChangeImage();
  }
}

template <std::size_t size>
void Mutator::ChangeBlock(std::array<std::uint8_t, size>& block) {
  const std::size_t place = Below(size);
  switch (Below(4)) {
    case 0:
      block[place] = static_cast<std::uint8_t>(block[place] ^ 1u << Below(8));
      return;
    case 1:
      block[place] = static_cast<std::uint8_t>(Below(12));
      return;
    case 2: {
      const std::uint16_t word = AnyOf(kTellingWords);
      block[place & ~std::size_t{1}] = static_cast<std::uint8_t>(word);
      block[place | 1] = static_cast<std::uint8_t>(word >> 8);
      return;
    }
    default:
      MutateBytes(block, size);
  }
}

template <class T, std::size_t most, class Make>
void Mutator::ChangeList(ShortList<T, most>& list, Make make) {
  const std::size_t place = Below(list.count + 1);
  const auto at = list.items.begin() + static_cast<std::ptrdiff_t>(place);
  const auto end = list.items.begin() + static_cast<std::ptrdiff_t>(list.count);
  if (list.count < most && (list.count == 0 || Below(2) == 0)) return list.Insert(place, make());
  if (at == end) return;
  switch (Below(4)) {
    case 0:
      std::move(at + 1, end, at);
      --list.count;
      return;
    case 1:
      std::swap(*at, list.items[Below(list.count)]);
      return;
    case 2:
      *at = make();
      return;
    default:
      MutateBytes(*at, at->size());
  }
}

void Mutator::ChangeImage() {
  auto& image = conversation_.image;
  image.count = MutateBytes(image.items, image.count);
}

HostCall Mutator::MakeHostCall() {
  HostCall call{};
  Put(call, host_call::kWhat, static_cast<std::uint8_t>(Below(kHostActions)));
  Put(call, host_call::kArgument, Below(2) == 0 ? static_cast<std::uint8_t>(Below(9)) : Byte());
  Put(call, host_call::kValue,
      Below(2) == 0 ? AnyOf(kTellingValues) : std::uint32_t{AnyOf(kTellingWords)});
  return call;
}

Fault Mutator::MakeFault() {
  Fault fault{};
  const Moment moment =
      family_ == Family::kExtended ? AnyOf(kExtendedMoments) : AnyOf(kStandardMoments);
  Put(fault, fault::kMoment, static_cast<std::uint8_t>(moment));
  const bool inEachTransfer =
      moment == Moment::kWrite || moment == Moment::kRead || moment == Moment::kAcknowledge;
  Put(fault, fault::kSkipped, static_cast<std::uint8_t>(Below(inEachTransfer ? 96 : 6)));
  Put(fault, fault::kKind, static_cast<std::uint8_t>(Below(kFaultKinds)));
  Put(fault, fault::kPlace, static_cast<std::uint8_t>(Below(16)));
  Put(fault, fault::kValue,
      Below(2) == 0 ? AnyOf(kTellingWords) : static_cast<std::uint16_t>(1u << Below(16)));
  return fault;
}

}  // namespace

std::size_t MutateConversation(Family family, std::span<std::uint8_t> input, std::size_t size,
                               unsigned seed) {
  NoteAsWritten(input.first(size));
  Conversation conversation = ReadConversation(input.first(size));
  Mutator(family, conversation, seed).Run();
  std::array<std::uint8_t, kLongestConversation> result;
  const std::size_t bytes = std::min(WriteConversation(conversation, result), input.size());
  std::copy_n(result.begin(), bytes, input.begin());
  return bytes;
}

std::size_t CrossConversations(std::span<const std::uint8_t> first,
                               std::span<const std::uint8_t> second, std::span<std::uint8_t> output,
                               unsigned seed) {
  NoteAsWritten(first);
  NoteAsWritten(second);
  Conversation crossed = ReadConversation(first);
  const Conversation other = ReadConversation(second);
  std::minstd_rand random(seed);
  if (random() % 2 == 0) crossed.scanner = other.scanner;
  if (random() % 2 == 0) crossed.host = other.host;
  if (random() % 2 == 0) crossed.calls = other.calls;
  if (random() % 2 == 0) crossed.faults = other.faults;
  std::array<std::uint8_t, kLongestConversation> result;
  const std::size_t bytes = std::min(WriteConversation(crossed, result), output.size());
  std::copy_n(result.begin(), bytes, output.begin());
  return bytes;
}

}  // namespace pmddb832::fuzz
