#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "capture/file/capture.h"
#include "interface/scanner_settings.h"
#include "pmscan/scan/module_exports.h"
#include "transport/still_image_device.h"

namespace documents {

// A host of the module, which scans 40 pixels by 300 lines in grey at 100 dpi unless told
// otherwise.
class SceneHost {
 public:
  explicit SceneHost(pmddb832::StillImageDevice& device);

  void Open() { module.openScanner(&settings); }
  void ChooseFeeder();
  void SetUp();
  // Asks for that many lines at most.
  void Acquire(std::uint32_t lines);
  void Scan();

  // The module reads the settings until it is unloaded.
  pmddb832::ScannerSettings settings{};
  pmscan::ModuleExports module;

 private:
  std::uint32_t lineBytes_ = 0;
};

// What a document shows of a conversation: a simulated scanner, and a host that talks to it.
struct Scene {
  std::string_view name;
  std::string_view scanner;
  void (*play)(SceneHost& host);
};

std::span<const Scene> Scenes();

// Plays the scene with the module and the scanner, as they are built now.
capture::Capture Play(const Scene& scene);

}  // namespace documents
