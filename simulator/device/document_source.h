#pragma once

#include <cstdint>
#include <string>

#include "simulator/device/feeder.h"
#include "simulator/device/scanner_config.h"

namespace simulator {

// Where the scanner takes documents from: the bed, or the option unit when it is switched on.
class DocumentSource {
 public:
  // Takes the pages of the feeder out of the equipment. A variant of the feeder takes option values
  // above 1.
  DocumentSource(Equipment& equipment, bool feederIsVariant);

  // Why the option value is impossible; empty when it is possible.
  std::string WhyImpossible(std::uint8_t optionValue) const;

  // Switches the option unit on, or off with 0. Call it with a possible value.
  void Select(std::uint8_t optionValue) { value_ = optionValue; }
  std::uint8_t Value() const { return value_; }
  bool IsFeeder() const { return value_ != 0 && unit_ == OptionUnit::kFeeder; }
  bool IsTransparencyUnit() const { return value_ != 0 && unit_ == OptionUnit::kTransparencyUnit; }

  // Makes a document ready to be scanned. Why there is none; empty when there is one.
  std::string WhyNoDocument();

  // The document that is ready: `onBed`, unless it is a page.
  const Picture& Document(const Picture& onBed) const {
    return IsFeeder() ? feeder_.Page() : onBed;
  }

  // The scan of the document is over; a page may have jammed.
  void ScanEnded(bool jammed);

  // Move a page; false when none can be moved.
  bool Feed();
  bool Eject();
  bool HasFeeder() const { return unit_ == OptionUnit::kFeeder; }

  std::uint8_t FeederStatus() const;
  std::uint8_t TransparencyStatus() const;

 private:
  const OptionUnit unit_;
  const bool variant_;
  const bool coverOpen_;
  const bool transparencyUnitError_;
  Feeder feeder_;
  std::uint8_t value_ = 0;
};

}  // namespace simulator
