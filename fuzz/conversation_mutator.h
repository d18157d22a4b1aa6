#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "fuzz/conversation.h"

namespace pmddb832::fuzz {

// Changes the conversation in the first `size` bytes of `input`, which is as long as the result may
// be, in a few places: a field, a call, a fault, the image. What it does depends on `seed` alone,
// and on libFuzzer's dictionary. Returns the size of the result.
std::size_t MutateConversation(Family family, std::span<std::uint8_t> input, std::size_t size,
                               unsigned seed);

// Writes a conversation into `output` whose parts come from both inputs, and returns its size.
std::size_t CrossConversations(std::span<const std::uint8_t> first,
                               std::span<const std::uint8_t> second, std::span<std::uint8_t> output,
                               unsigned seed);

}  // namespace pmddb832::fuzz
