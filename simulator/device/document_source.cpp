#include "simulator/device/document_source.h"

#include <utility>

#include "simulator/device/status_bits.h"

namespace simulator {

DocumentSource::DocumentSource(Equipment& equipment, bool feederIsVariant)
    : unit_(equipment.optionUnit),
      variant_(feederIsVariant),
      coverOpen_(equipment.defects.coverOpen),
      transparencyUnitError_(equipment.defects.transparencyUnitError),
      feeder_(std::move(equipment.feederPages), equipment.feederCopies) {}

std::string DocumentSource::WhyImpossible(std::uint8_t optionValue) const {
  if (optionValue == 0) return {};
  if (unit_ == OptionUnit::kNone) return "no option unit is fitted";
  if (optionValue == 1 || (HasFeeder() && variant_)) return {};
  return "the option unit knows the values 0 and 1, not " + std::to_string(optionValue);
}

std::string DocumentSource::WhyNoDocument() {
  if (IsTransparencyUnit() && transparencyUnitError_) return "the transparency unit has an error";
  if (!IsFeeder()) return {};
  if (coverOpen_) return "the document feeder's cover is open";
  return feeder_.Load() ? "" : "the document feeder has no page that it can load";
}

void DocumentSource::ScanEnded(bool jammed) {
  if (jammed) feeder_.Jam();
  if (IsFeeder()) feeder_.PageWasScanned();
}

bool DocumentSource::Feed() {
  return !coverOpen_ && feeder_.Load();
}

bool DocumentSource::Eject() {
  return !coverOpen_ && feeder_.Eject();
}

std::uint8_t DocumentSource::FeederStatus() const {
  if (!HasFeeder()) return 0;
  const int conditions = (feeder_.PaperOut() ? status_bits::kPaperOut : 0) |
                         (coverOpen_ ? status_bits::kCoverOpen : 0) |
                         (feeder_.Jammed() ? status_bits::kJam : 0);
  const int summary = conditions != 0 ? status_bits::kUnitError : 0;
  return static_cast<std::uint8_t>(status_bits::kInstalled | summary | conditions);
}

std::uint8_t DocumentSource::TransparencyStatus() const {
  if (unit_ != OptionUnit::kTransparencyUnit) return 0;
  const int error = transparencyUnitError_ ? status_bits::kUnitError | status_bits::kJam : 0;
  return static_cast<std::uint8_t>(status_bits::kInstalled | error);
}

}  // namespace simulator
