#include "fuzz/conversation.h"

#include <algorithm>

#include "fuzz/input.h"

namespace pmddb832::fuzz {
namespace {

template <std::size_t size>
void ReadBlock(Input& input, std::array<std::uint8_t, size>& block) {
  const auto bytes = input.Take(size);
  std::copy(bytes.begin(), bytes.end(), block.begin());
}

template <class T, std::size_t most>
void ReadList(Input& input, std::size_t count, ShortList<T, most>& list) {
  list.count = std::min(count, most);
  for (T& item : list.All()) ReadBlock(input, item);
}

class Output {
 public:
  explicit Output(std::span<std::uint8_t> bytes) : bytes_(bytes) {}

  void Put(std::span<const std::uint8_t> bytes) {
    std::copy(bytes.begin(), bytes.end(), bytes_.begin() + static_cast<std::ptrdiff_t>(size_));
    size_ += bytes.size();
  }
  void PutByte(std::size_t value) {
    const auto byte = static_cast<std::uint8_t>(value);
    Put({&byte, 1});
  }
  std::size_t SizeWithoutZeros() const {
    std::size_t size = size_;
    while (size > 0 && bytes_[size - 1] == 0) --size;
    return size;
  }

 private:
  std::span<std::uint8_t> bytes_;
  std::size_t size_ = 0;
};

}  // namespace

Conversation ReadConversation(std::span<const std::uint8_t> bytes) {
  Input input(bytes);
  Conversation conversation;
  ReadBlock(input, conversation.scanner);
  ReadBlock(input, conversation.host);
  const std::size_t calls = input.Byte();
  const std::size_t faults = input.Byte();
  ReadList(input, calls, conversation.calls);
  ReadList(input, faults, conversation.faults);
  const auto image =
      input.Rest().first(std::min(input.Rest().size(), conversation.image.items.size()));
  std::copy(image.begin(), image.end(), conversation.image.items.begin());
  conversation.image.count = image.size();
  return conversation;
}

std::size_t WriteConversation(const Conversation& conversation, std::span<std::uint8_t> input) {
  Output output(input);
  output.Put(conversation.scanner);
  output.Put(conversation.host);
  output.PutByte(conversation.calls.count);
  output.PutByte(conversation.faults.count);
  for (const HostCall& call : conversation.calls.All()) output.Put(call);
  for (const Fault& fault : conversation.faults.All()) output.Put(fault);
  output.Put(conversation.image.All());
  return output.SizeWithoutZeros();
}

}  // namespace pmddb832::fuzz
