// Conversations with a scanner of one family, which the build names, as fuzz/conversation.h spells
// them.

#include "fuzz/conversation_mutator.h"
#include "fuzz/fuzz_host.h"

namespace {

constexpr auto kFamily = pmddb832::fuzz::Family::PMDDB832_FUZZ_FAMILY;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto conversation = pmddb832::fuzz::ReadConversation({data, size});
  pmddb832::fuzz::FuzzHost(conversation, kFamily).Converse();
  return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned seed) {
  return pmddb832::fuzz::MutateConversation(kFamily, {data, maxSize}, size, seed);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* first, std::size_t firstSize,
                                                 const std::uint8_t* second, std::size_t secondSize,
                                                 std::uint8_t* output, std::size_t maxSize,
                                                 unsigned seed) {
  return pmddb832::fuzz::CrossConversations({first, firstSize}, {second, secondSize},
                                            {output, maxSize}, seed);
}
