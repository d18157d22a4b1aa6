#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace simulator {

enum class OptionUnit { kNone, kFeeder, kTransparencyUnit };

enum class Family { kExtended, kStandard };

// A model by its id, with what its scanner reports. Resolutions in dots per inch; sizes in
// hundredths of an inch, 0 x 0 where no option unit is fitted.
struct Model {
  std::string_view id;           // as the host names it: at most 7 characters count
  std::string_view productName;  // 16 characters
  std::string_view level;
  std::uint32_t basicResolution;  // 0: there is none of the extended family
  std::uint32_t maxResolution;
  std::uint32_t bedWidth;
  std::uint32_t bedHeight;
  OptionUnit optionUnit;
  std::uint32_t optionWidth;
  std::uint32_t optionHeight;
  std::uint8_t feederFlags;
  bool listsHalf;  // in the standard family: lists resolutions up to half the highest

  bool IsOf(Family family) const { return family == Family::kStandard || basicResolution != 0; }
};

std::span<const Model> ModelTable();

// The model with the id, in any case; null when the family has none.
const Model* FindModel(Family family, std::string_view id);

}  // namespace simulator
