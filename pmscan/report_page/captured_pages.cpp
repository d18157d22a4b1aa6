#include "pmscan/report_page/captured_pages.h"

#include <algorithm>
#include <numeric>
#include <variant>

#include "capture/conversation/captured_conversation.h"
#include "pmscan/captures/call_values.h"
#include "wire/block_header.h"
#include "wire/transfer_header.h"

namespace pmscan {
namespace {

using capture::Part;
using Bytes = std::span<const std::uint8_t>;

constexpr std::uint32_t kWentOn = 1;  // the status of an acquisition that did not fail

// One bit tells of an error in the status bytes of both families.
static_assert(pmddb832::transfer::kError == pmddb832::block::kError);

template <std::unsigned_integral T, std::size_t offset>
T NumberIn(Bytes bytes, pmddb832::Field<T, offset>) {
  if (bytes.size() < offset + sizeof(T)) return 0;
  return pmddb832::GetLittleEndian<T>(bytes.subspan<offset, sizeof(T)>());
}

PictureShape ExtendedShape(Bytes block) {
  namespace parameter = pmddb832::parameter;
  return {NumberIn(block, parameter::kAreaWidth), NumberIn(block, parameter::kAreaHeight),
          NumberIn(block, parameter::kMainResolution), NumberIn(block, parameter::kColorMode),
          NumberIn(block, parameter::kBitsPerSample)};
}

// Follows the transfers from picture to picture, and the calls beside them.
class PageTaker {
 public:
  explicit PageTaker(std::vector<CapturedPage>& taken) : pages_(taken) {}

  void Take(const capture::Transfer& transfer) {
    const Part part = Follow(conversation_, transfer);
    if (part == Part::kCommand) isPictureOpen_ = false;
    if (part == Part::kParameters && conversation_.IsWhole()) {
      shape_.Note(*conversation_.Command(), conversation_.Message());
    }
    if (part == Part::kBlock || part == Part::kBlockHeader) TakePicture(part, transfer);
  }
  void Take(const capture::CallBegin& call) {
    if (call.name == "PMInitAcquire") hostPage_ = kNoPage;
  }
  void Take(const capture::CallEnd& call) {
    if (call.name == "PMInitAcquire") hostLines_ = ValueOf(call.results, "heightLines");
    if (call.name == "PMAcquireImage") TakeBand(call.results);
  }
  void Take(const capture::SettingsChange&) {}

  void Count() { ++entry_; }

 private:
  static constexpr std::size_t kNoPage = static_cast<std::size_t>(-1);

  void TakePicture(Part part, const capture::Transfer& transfer) {
    if (!isPictureOpen_) Open();
    const bool isWhole = transfer.result >= 0 && transfer.delivered != 0;
    if (part == Part::kBlock && isWhole) AddBlock(transfer);
  }

  void Open() {
    pages_.push_back({shape_, hostLines_, {}, {}, false});
    hostPage_ = pages_.size() - 1;
    isPictureOpen_ = true;
  }

  void AddBlock(const capture::Transfer& transfer) {
    const capture::PictureBlock& block = conversation_.Picture()->Block();
    const Bytes kept = transfer.Kept();
    CapturedBlock taken{0,      block.bytes,
                        0,      (block.status & pmddb832::transfer::kError) != 0,
                        entry_, kept.first(std::min<std::size_t>(kept.size(), block.bytes))};
    if (block.lines != 0) taken.lineBytes = block.announcedBytes / block.lines;
    if (taken.lineBytes != 0) {
      taken.lines = static_cast<std::uint32_t>(
          std::min<std::uint64_t>(block.lines, block.bytes / taken.lineBytes));
    }
    pages_.back().blocks.push_back(taken);
  }

  void TakeBand(const std::vector<capture::Value>& results) {
    if (hostPage_ == kNoPage || ValueOf(results, "status") != kWentOn) return;
    CapturedPage& page = pages_[hostPage_];
    if (const std::uint32_t lines = ValueOf(results, "lines"); lines != 0) {
      page.bands.push_back(lines);
    }
    page.isDone = ValueOf(results, "done") != 0;
  }

  std::vector<CapturedPage>& pages_;
  capture::Conversation conversation_;
  PictureShape shape_;
  std::uint32_t hostLines_ = 0;
  bool isPictureOpen_ = false;
  std::size_t hostPage_ = kNoPage;  // that the host's bands belong to
  std::size_t entry_ = 0;
};

}  // namespace

void PictureShape::Note(const pmddb832::CommandShape& command, Bytes sent) {
  namespace esc = pmddb832::esc;
  namespace standard = pmddb832::standard_parameter;
  if (command.prefix == pmddb832::kFs) {
    if (command.letter == pmddb832::fs::kParameters) *this = ExtendedShape(sent);
  } else if (command.letter == esc::kArea) {
    width = NumberIn(sent, standard::kThirdWord);
    height = NumberIn(sent, standard::kFourthWord);
  } else if (command.letter == esc::kResolution) {
    dotsPerInch = NumberIn(sent, standard::kFirstWord);
  } else if (command.letter == esc::kColorMode) {
    colorMode = NumberIn(sent, standard::kByte);
  } else if (command.letter == esc::kBitsPerSample) {
    bits = NumberIn(sent, standard::kByte);
  }
}

std::uint64_t CapturedPage::Lines() const {
  return std::accumulate(blocks.begin(), blocks.end(), std::uint64_t{0},
                         [](std::uint64_t sum, const CapturedBlock& block) {
                           return sum + (block.hasError ? 0 : block.lines);
                         });
}

bool CapturedPage::IsWhole() const {
  return isDone || (shape.height != 0 && Lines() >= shape.height);
}

std::vector<CapturedPage> PagesOf(const capture::Capture& capture) {
  std::vector<CapturedPage> pages;
  PageTaker taker(pages);
  for (const capture::Entry& entry : capture.entries) {
    std::visit([&](const auto& item) { taker.Take(item); }, entry);
    taker.Count();
  }
  return pages;
}

}  // namespace pmscan
