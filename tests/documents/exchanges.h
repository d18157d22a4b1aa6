#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "capture/file/capture.h"
#include "tests/documents/scenes.h"

namespace documents {

// Conversations as documents show them: scenes that are played with the module and the simulator.
class Exchanges {
 public:
  // "SCENE" is all of a scene; "SCENE / PMFeed" its first call with that name, "SCENE / PMFeed ..."
  // that and the calls behind it; "SCENE / FS G" the first exchange of that command, "SCENE / FS G
  // ..." that and the rest of its call. Throws DocumentError when there is no such thing.
  std::vector<std::string> Tell(const std::string& choice);

  // Scenes of which nothing was told.
  std::vector<std::string> Untold() const;

 private:
  const capture::Capture& Played(const std::string& scene);

  std::map<std::string, capture::Capture> played_;
};

}  // namespace documents
