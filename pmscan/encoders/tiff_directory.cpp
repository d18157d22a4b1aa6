#include "pmscan/encoders/tiff_directory.h"

#include <array>

#include "pmscan/encoders/byte_order.h"

namespace pmscan {
namespace {

constexpr std::uint16_t kText = 2;
constexpr std::uint16_t kShort = 3;
constexpr std::uint16_t kLong = 4;
constexpr std::uint16_t kFraction = 5;

constexpr std::uint16_t kModelTag = 272;
constexpr std::uint16_t kSoftwareTag = 305;
constexpr std::uint16_t kDateTag = 306;

constexpr std::size_t kEntryBytes = 12;
constexpr std::size_t kInlineBytes = 4;

}  // namespace

void TiffDirectory::AddShorts(std::uint16_t tag, const std::vector<std::uint16_t>& values) {
  Entry entry{tag, kShort, static_cast<std::uint32_t>(values.size()), {}};
  for (const std::uint16_t value : values) AppendLittle(entry.value, value, 2);
  entries_.push_back(std::move(entry));
}

void TiffDirectory::AddLongs(std::uint16_t tag, const std::vector<std::uint32_t>& values) {
  Entry entry{tag, kLong, static_cast<std::uint32_t>(values.size()), {}};
  for (const std::uint32_t value : values) AppendLittle(entry.value, value, 4);
  entries_.push_back(std::move(entry));
}

void TiffDirectory::AddWhole(std::uint16_t tag, std::uint32_t value) {
  Entry entry{tag, kFraction, 1, {}};
  AppendLittle(entry.value, value, 4);
  AppendLittle(entry.value, 1, 4);
  entries_.push_back(std::move(entry));
}

// A text ends with a zero byte.
void TiffDirectory::AddText(std::uint16_t tag, const std::string& text) {
  Entry entry{tag, kText, static_cast<std::uint32_t>(text.size() + 1), {text.begin(), text.end()}};
  entry.value.push_back(0);
  entries_.push_back(std::move(entry));
}

void TiffDirectory::AddScanner(const PictureOrigin& origin) {
  AddText(kModelTag, origin.scanner);
}

void TiffDirectory::AddSoftwareAndDate(const PictureOrigin& origin) {
  std::array<char, 20> date{};
  std::strftime(date.data(), date.size(), "%Y:%m:%d %H:%M:%S", &origin.date);
  AddText(kSoftwareTag, origin.software);
  AddText(kDateTag, date.data());
}

std::uint32_t TiffDirectory::LinkOffset() const {
  return static_cast<std::uint32_t>(2 + kEntryBytes * entries_.size());
}

std::vector<std::uint8_t> TiffDirectory::Bytes(std::uint32_t place) const {
  std::vector<std::uint8_t> bytes;
  std::vector<std::uint8_t> behind;
  const std::uint32_t start = place + LinkOffset() + 4;
  AppendLittle(bytes, static_cast<std::uint32_t>(entries_.size()), 2);
  for (const Entry& entry : entries_) {
    AppendLittle(bytes, entry.tag, 2);
    AppendLittle(bytes, entry.type, 2);
    AppendLittle(bytes, entry.count, 4);
    std::vector<std::uint8_t> value = entry.value;
    if (value.size() > kInlineBytes) {
      if (value.size() % 2 == 1) value.push_back(0);
      AppendLittle(bytes, start + static_cast<std::uint32_t>(behind.size()), 4);
      behind.insert(behind.end(), value.begin(), value.end());
    } else {
      value.resize(kInlineBytes);
      bytes.insert(bytes.end(), value.begin(), value.end());
    }
  }
  AppendLittle(bytes, 0, 4);
  bytes.insert(bytes.end(), behind.begin(), behind.end());
  return bytes;
}

std::vector<std::uint8_t> TiffHeader() {
  return {'I', 'I', 42, 0, 8, 0, 0, 0};
}

}  // namespace pmscan
