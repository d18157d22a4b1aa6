#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

#include "simulator/catalog/profile.h"

namespace pmsim {

// What a host asks for. Texts are UTF-8; an empty one asks for nothing.
struct DeviceRequest {
  std::string device;         // "sim:NAME", "sim:FILE.json" or "capture:FILE"
  std::string faultScript{};  // a file
  std::string original{};     // a picture file
  std::string recording{};    // the file for the capture of the conversation
  bool mayOverwrite = false;  // the recording may replace a file
  bool isTolerant = false;    // a captured scanner finds its way back after a difference
};

// What the system brings.
struct Surroundings {
  std::filesystem::path scannerFiles;  // the folder of those that are found by their names
  simulator::PictureReader readPicture;
};

// A request that cannot be met. what() says what was expected, what came and what to do.
class RequestError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace pmsim
