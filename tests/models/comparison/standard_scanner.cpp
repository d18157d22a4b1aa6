#include "tests/models/comparison/standard_scanner.h"

#include <algorithm>
#include <utility>

namespace pmddb832::models {

StandardScanner::StandardScanner(Random& random, const Manners& manners)
    : Scanner(random, manners), name_(ProductName()) {
  level_ = {'B', random.Pick<std::uint8_t>({'3', '4', '5', '6', '7', '8', '8', '9'})};
  if (random.OneIn(12)) level_ = {'A', '5'};
  if (random.OneIn(100)) level_ = {random.Pick<std::uint8_t>({'A', 'B', 'C'}), random.Byte()};
  constexpr std::uint16_t kListed[] = {50, 75, 100, 150, 200, 300, 400, 600, 800, 1200};
  for (const std::uint16_t resolution : kListed) {
    if (random.OneIn(2)) resolutions_.push_back(resolution);
  }
  if (random.OneIn(150)) resolutions_.push_back(random.Pick<std::uint16_t>({0, 0x8000, 0xFFFF}));
  const std::uint32_t most = resolutions_.empty() ? 0u : resolutions_.back();
  const auto size = [&] { return Low16(random.Between(most / 10, std::min(most * 12, 65535u))); };
  width_ = size();
  height_ = size();
  status_ = Noise(11);
  for (const std::size_t at : {2u, 4u, 7u, 9u}) PutU16(status_, at, size());
  status_[0] &= 0x30;
  status_[1] = random.OneIn(2) ? 0x80 : 0x00;
  status_[6] = random.OneIn(2) ? 0x80 : 0x00;
}

void StandardScanner::Answer(std::uint8_t /*prefix*/, char letter) {
  switch (letter) {
    case '@':
      return Ack();
    case 'I':
      return ReplyIdentity();
    case '?':
      return ReplyProduct();
    case 'f':
      return ReplyStatus();
    case 'F':
      return Reply({0x02, 0x00, 0x00, 0x00});
    case 'G':
      return StartTransfer();
    case 'q':
      return ReplyToFocusQuery();
    default:
      return AckAndExpectParameters(letter);
  }
}

// The level query and the identity are one command.
void StandardScanner::ReplyIdentity() {
  if (IsOdd()) return ReplyToLevelQuery(0x00);
  Bytes data{level_[0], level_[1]};
  for (const std::uint16_t resolution : resolutions_) {
    data.insert(data.end(), {'R', Low8(resolution), Low8(resolution >> 8)});
  }
  data.insert(data.end(),
              {'A', Low8(width_), Low8(width_ >> 8), Low8(height_), Low8(height_ >> 8)});
  ReplyWithHeader(static_cast<std::uint8_t>(Chance().Byte() & 0xFD), data);
}

void StandardScanner::ReplyProduct() {
  Bytes data = Noise(8);
  data.insert(data.end(), name_.begin(), name_.end());
  if (IsOdd()) data.resize(Chance().Pick({0u, 9u, 23u, 26u, 150u, 151u, 0xFFFFu}));
  ReplyWithHeader(0, data);
}

void StandardScanner::ReplyStatus() {
  Bytes data = status_;
  if (IsOdd()) data[0] = Chance().Pick<std::uint8_t>({0x80, 0x02, 0xB0});
  const auto condition = [&] { return static_cast<std::uint8_t>(Chance().Byte() & 0x4E); };
  if (Chance().OneIn(5)) data[1] |= condition();
  if (Chance().OneIn(5)) data[6] |= condition();
  if (IsOdd() && Chance().OneIn(2))
    data.resize(Chance().Pick({0u, 1u, 6u, 10u, 146u, 147u, 0xFFFFu}));
  ReplyWithHeader(IsOdd() ? 0x80 : 0x00, data);
}

std::uint32_t StandardScanner::RawLineBytes() const {
  const auto parameter = [&](char letter) {
    const auto found = Parameters().find(letter);
    return found == Parameters().end() ? Bytes(8) : found->second;
  };
  const std::uint32_t width = U16(parameter('A'), 4);
  const std::uint8_t mode = parameter('C')[0];
  const std::uint32_t channels = mode == 0x13 || mode == 1 || mode == 2 ? 3 : 1;
  switch (parameter('D')[0]) {
    case 1:
      return width / 8 * channels;
    case 3:
      return width / 2 * channels;
    case 4:
      return mode == 0x13 ? width / 2 * 3 : width / 2;
    case 8:
      return width * channels;
    default:
      return width * 2 * channels;
  }
}

// The whole area, block by block, the last one marked; without a count a block is one line.
Bytes StandardScanner::Blocks(std::uint32_t linesPerBlock, bool counted) {
  const auto area = Parameters().find('A');
  std::uint32_t left = area == Parameters().end() ? 0u : U16(area->second, 6);
  std::uint32_t lineBytes = std::min(RawLineBytes(), 65535u);
  Bytes stream;
  do {
    std::uint32_t lines = std::min(left, linesPerBlock);
    left -= lines;
    std::uint8_t status = left == 0 ? 0x20 : 0x00;
    if (Chance().OneIn(10)) status |= 0x40;
    if (IsOdd()) status ^= Chance().Pick<std::uint8_t>({0x20, 0x80, 0x1F});
    if (IsOdd()) lines = Chance().Pick({0u, 1u, lines / 2, lines + 1, 0xFFFFu});
    if (IsOdd()) lineBytes = Chance().Pick({0u, 1u, lineBytes / 2, lineBytes + 3, 0xFFFFu});
    const bool spoilt = IsOdd() && Chance().OneIn(3);
    stream.insert(stream.end(), {spoilt ? std::uint8_t{0x15} : std::uint8_t{0x02}, status,
                                 Low8(lineBytes), Low8(lineBytes >> 8)});
    if (counted) stream.insert(stream.end(), {Low8(lines), Low8(lines >> 8)});
    const Bytes data = Noise(std::min(std::size_t{lineBytes} * lines, std::size_t{70000}));
    stream.insert(stream.end(), data.begin(), data.end());
  } while (left > 0 && stream.size() < 1 << 20);
  return stream;
}

// In line mode a start is answered by a header of its own, but for the second try.
void StandardScanner::StartTransfer() {
  const auto asked = Parameters().find('d');
  const bool counted = asked != Parameters().end() && level_[1] >= '4';
  const std::uint32_t most = counted ? asked->second[0] : 1u;
  const std::uint32_t linesPerBlock = Chance().OneIn(2) ? most : Chance().Between(1, most);
  const bool again = std::exchange(refused_, false);
  if (!again && Chance().OneIn(12)) {
    refused_ = true;
    Reply({0x02, 0x80, 0x00, 0x00, 0x00, 0x00});
    return;
  }
  if (!counted && !again) Reply({0x02, 0x00, 0x00, 0x00, 0x01, 0x00});
  BeginImage(Blocks(linesPerBlock, counted));
}

}  // namespace pmddb832::models
