#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/catalog/catalog.h"
#include "simulator/catalog/json_document.h"
#include "simulator/catalog/value_kind.h"
#include "simulator/faults/fault_script.h"

namespace simulator {

// A simulated scanner as a JSON file describes it (docs/simulator-profiles.md), pictures unread.
struct Profile {
  // Sheets that lie in the feeder one behind the other and look alike.
  struct Pages {
    std::string file;  // empty: like the original
    std::uint32_t copies = 1;
  };

  std::string description;
  std::string modelId;       // that the host has of the scanner; may be empty
  ScannerConfig config;      // without pictures
  std::string originalFile;  // what lies on the bed; empty: what the host puts there
  std::vector<Pages> pages{{}};
  std::vector<Fault> faults;
};

// Names of files are UTF-8; those in a profile stand for files beside it, and come out with its
// folder in front. Throw ProfileError that names file, line and key.
Profile ReadProfile(const std::string& file);
Profile ParseProfile(std::string_view text, const std::string& file);

using PictureReader = std::function<Picture(const std::string& file)>;

// The scanner of a profile, its pages in the feeder and `onBed` on the bed and in place of every
// page without a file. Reads each file once; what the reader throws goes through.
std::unique_ptr<Scanner> MakeScanner(const Profile& profile, const PictureReader& read,
                                     Picture onBed);

// The keys of every object that a profile or fault script is made of.
std::vector<KeyGroup> ProfileKeys();

}  // namespace simulator
