#include "tests/models/comparison/extended_scanner.h"

#include <algorithm>

namespace pmddb832::models {

ExtendedScanner::ExtendedScanner(Random& random, const Manners& manners)
    : Scanner(random, manners) {
  const Bytes noise = Noise(80);
  std::copy(noise.begin(), noise.end(), identity_.begin());
  level_ = {'B', random.Pick<std::uint8_t>({'3', '4', '5', '6', '7', '8', '8', '8'})};
  if (random.OneIn(100)) level_ = {random.Pick<std::uint8_t>({'A', 'B', 'C'}), random.Byte()};
  identity_[0] = level_[0];
  identity_[1] = level_[1];
  const std::uint32_t base = random.Pick({100u, 300u, 400u, 600u, 1200u, 2400u});
  PutU32(identity_, 4, random.OneIn(300) ? 0 : base);
  PutU32(identity_, 8, random.OneIn(20) ? 0x8000 : 25);
  PutU32(identity_, 12, random.OneIn(20) ? 0x1FFFF : 4 * base);
  for (std::size_t area = 20; area < 44; area += 8) {
    PutU32(identity_, area, random.Between(base / 10, base * 9));
    PutU32(identity_, area + 4, random.Between(base / 10, base * 14));
  }
  const std::string name = ProductName();
  std::copy(name.begin(), name.end(), identity_.begin() + 46);
  feeder_ = random.OneIn(2) ? 0x80 : 0x00;
  transparencyUnit_ = random.OneIn(2) ? 0x80 : 0x00;
}

void ExtendedScanner::Answer(std::uint8_t prefix, char letter) {
  switch (letter) {
    case '@':
      return Ack();
    case 'F':
      return ReplyStatus();
    case 'G':
      return StartTransfer();
    case 'q':
      return ReplyToFocusQuery();
    case 'I':
      // ESC asks for the level, FS for the identity.
      return prefix == 0x1B ? ReplyToLevelQuery(0x02)
                            : Reply(Bytes(identity_.begin(), identity_.end()));
    default:
      return AckAndExpectParameters(letter);
  }
}

void ExtendedScanner::ReplyStatus() {
  Bytes status = Noise(16);
  // A scanner whose block failed may tell why.
  const bool tells = IsOdd() || (troubled_ && Chance().OneIn(2));
  status[0] = tells ? Chance().Pick<std::uint8_t>({0x80, 0x40, 0xC0, 0x02, 0x82}) : 0x00;
  const auto conditions = [&] { return static_cast<std::uint8_t>(Chance().Byte() & 0x4E); };
  const bool worn = Chance().OneIn(3);
  status[1] = static_cast<std::uint8_t>(feeder_ | (worn ? conditions() : 0x00));
  status[2] = static_cast<std::uint8_t>(transparencyUnit_ | (worn ? conditions() : 0x00));
  Reply(status);
}

std::uint32_t ExtendedScanner::RawLineBytes() const {
  const Bytes& block = Parameters().at('W');
  const std::uint32_t width = std::min(U32(block, 16), 40000u);
  const bool colored = block[24] == 0x13 || block[24] == 0x23;
  if (block[25] == 1) return width / 8;
  if (block[25] == 4) return width * 2;
  return width * (colored ? 3 : 1) * (block[25] > 8 ? 2 : 1);
}

// Full blocks of as many lines as were asked for, and a last one with the rest, maybe of none.
void ExtendedScanner::StartTransfer() {
  Bytes header(14);
  header[0] = IsOdd() && Chance().OneIn(2) ? 0x15 : 0x02;
  header[1] = Chance().OneIn(12) ? 0x80 : static_cast<std::uint8_t>(Chance().Byte() & 0x7F);
  Bytes image;
  troubled_ = false;
  if (Parameters().contains('W')) {
    const Bytes& block = Parameters().at('W');
    const std::uint32_t perBlock = block[28];
    const std::uint32_t lines = std::min(U32(block, 20), 3000u);
    std::uint32_t full = lines / perBlock, last = lines % perBlock;
    if (last == 0 && full > 0 && Chance().OneIn(2)) {
      --full;
      last = perBlock;
    }
    std::uint32_t fullBytes = perBlock * RawLineBytes(), lastBytes = last * RawLineBytes();
    if (IsOdd()) fullBytes = Chance().Pick({0u, 1u, fullBytes / 2, 65279u, 65280u, ~0u});
    if (IsOdd()) lastBytes = Chance().Pick({0u, 1u, lastBytes / 2, 65279u, 65280u, ~0u});
    PutU32(header, 2, fullBytes);
    PutU32(header, 6, full);
    PutU32(header, 10, lastBytes);
    for (std::uint32_t i = 0; i <= full && image.size() < 1 << 20; ++i) {
      const Bytes data = Noise(std::min(i < full ? fullBytes : lastBytes, 70000u));
      image.insert(image.end(), data.begin(), data.end());
      const bool fails = IsOdd() || Chance().OneIn(100);
      image.push_back(fails ? Chance().Pick<std::uint8_t>({0x80, 0xFF, 0x7F}) : 0x00);
      troubled_ |= fails;
    }
  }
  Reply(header);
  BeginImage(std::move(image));
}

}  // namespace pmddb832::models
