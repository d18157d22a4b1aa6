#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/catalog/profile.h"
#include "simulator/device/scanner.h"
#include "simulator/faults/fault.h"

namespace simulator {

// Stands in front of the name of a simulated scanner where other devices have names too.
inline constexpr std::string_view kDevicePrefix = "sim:";

// What a user asks for; names of files are UTF-8.
struct SimulationRequest {
  std::string name;                      // as MakeScanner takes it, or that of a scanner file
  std::string faultScript{};             // a file; empty: none
  std::string original{};                // a picture file; empty: that of the scanner file
  std::filesystem::path scannerFiles{};  // the folder where those are that are not found by name
  PictureReader readPicture{};
  std::function<Picture()> drawTestPage{};  // lies on the bed where no original does
};

// A scanner, and what goes wrong on its cable besides its own faults.
struct Simulation {
  std::string modelId;  // that the host has of the scanner, may be empty
  std::unique_ptr<Scanner> scanner;
  std::vector<Fault> faults;  // those of the scanner file first
};

// Throws std::invalid_argument for a name, ProfileError for a file that cannot be used; what the
// request's functions throw goes through.
Simulation Simulate(const SimulationRequest& request);

}  // namespace simulator
