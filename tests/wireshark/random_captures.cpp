#include "tests/wireshark/random_captures.h"

#include <algorithm>
#include <random>
#include <span>
#include <string>
#include <variant>

#include "simulator/catalog/catalog.h"
#include "simulator/faults/defects.h"
#include "simulator/faults/fault_injector.h"
#include "tests/scans/captured_scan.h"

namespace pmddb832::tests {
namespace {

using capture::Capture;
using capture::Direction;
using capture::Transfer;

// std::mt19937 gives the same numbers everywhere; the distributions need not.
class Dice {
 public:
  explicit Dice(std::uint32_t seed) : numbers_(seed) {}
  std::uint32_t Below(std::size_t count) {
    return static_cast<std::uint32_t>(numbers_() % std::max<std::size_t>(count, 1));
  }

 private:
  std::mt19937 numbers_;
};

std::string ScannerName(Dice& dice) {
  const std::vector<std::string> names = simulator::ScannerNames();
  std::string name = names[dice.Below(names.size())];
  const std::span<const simulator::DefectRow> defects = simulator::DefectTable();
  const simulator::DefectRow& defect = defects[dice.Below(defects.size())];
  if (dice.Below(3) == 0) return name;
  name += "+" + std::string(defect.name);
  if (defect.IsFlag()) return name;
  constexpr std::string_view kLetters = "@ACDFGIRWZegdfz";
  if (defect.name.find("nak") != std::string_view::npos) {
    return name + "=" + kLetters[dice.Below(kLetters.size())];
  }
  return name + "=" + std::to_string(dice.Below(dice.Below(2) == 0 ? 9 : 3000));
}

Capture Record(Dice& dice) {
  const auto scanner = simulator::MakeScanner(ScannerName(dice), simulator::Picture{});
  simulator::FaultInjector cable(*scanner, {});
  return RecordScan(cable, dice.Below(2) == 0);
}

void Flip(Transfer& transfer, Dice& dice) {
  if (!transfer.bytes || transfer.bytes->empty()) return;
  constexpr std::uint8_t kBytes[] = {0x00, 0x02, 0x06, 0x0C, 0x15, 0x18, 0x1B, 0x1C, 0x80, 0xFF};
  std::uint8_t& byte = (*transfer.bytes)[dice.Below(transfer.bytes->size())];
  byte = dice.Below(2) == 0 ? kBytes[dice.Below(std::size(kBytes))]
                            : static_cast<std::uint8_t>(byte ^ 1u << dice.Below(8));
  transfer.lastByte = transfer.bytes->back();
}

// A read that is cut short tells what was asked for; of a write there is no more than was sent.
void Cut(Transfer& transfer, Dice& dice) {
  const std::uint32_t count = dice.Below(transfer.delivered + std::size_t{1});
  if (transfer.bytes) transfer.bytes->resize(count);
  transfer.delivered = count;
  if (transfer.direction == Direction::kToScanner) transfer.requested = count;
}

void Break(Transfer& transfer, Dice& dice) {
  const std::uint32_t requested = transfer.requested;
  if (transfer.direction == Direction::kFromScanner) {
    Cut(transfer, dice);
  } else {
    transfer.delivered = 0;
  }
  transfer.requested = requested;
  transfer.result = -1 - static_cast<std::int32_t>(dice.Below(9));
}

void Forget(Transfer& transfer) {
  if (transfer.direction == Direction::kToScanner || !transfer.bytes) return;
  transfer.lastByte = transfer.bytes->empty() ? std::uint8_t{0} : transfer.bytes->back();
  transfer.bytes.reset();
}

void EditTransfer(Transfer& transfer, Dice& dice) {
  switch (dice.Below(4)) {
    case 0:
      return Flip(transfer, dice);
    case 1:
      return Cut(transfer, dice);
    case 2:
      return Break(transfer, dice);
    default:
      return Forget(transfer);
  }
}

// Behind the first transfer.
void Edit(Capture& capture, Dice& dice) {
  std::vector<capture::Entry>& entries = capture.entries;
  const auto first = std::find_if(entries.begin(), entries.end(), [](const capture::Entry& entry) {
    return std::holds_alternative<Transfer>(entry);
  });
  if (first == entries.end()) return;
  const auto place = first + 1 + dice.Below(static_cast<std::size_t>(entries.end() - first - 1));
  if (place == entries.end()) return;
  const std::uint32_t kind = dice.Below(12);
  if (kind == 0) {
    entries.erase(place, entries.end());
  } else if (kind == 1) {
    entries.erase(place);
  } else if (kind == 2) {
    entries.insert(place, capture::Entry(*place));
  } else if (kind == 3) {
    entries.insert(place, capture::CallBegin{"PMGetScanError", {}, 0});
  } else if (auto* const transfer = std::get_if<Transfer>(&*place)) {
    EditTransfer(*transfer, dice);
  }
}

}  // namespace

Capture RandomCapture(std::uint32_t number) {
  Dice dice(number);
  Capture capture = Record(dice);
  for (std::uint32_t edits = dice.Below(7); edits > 0; --edits) Edit(capture, dice);
  return capture;
}

}  // namespace pmddb832::tests
