#include <map>
#include <utility>

#include "simulator/catalog/profile.h"

// From a profile to a scanner with paper in it.

namespace simulator {
namespace {

// Reads no file twice.
class PictureShelf {
 public:
  PictureShelf(const PictureReader& reader, Picture usualPicture)
      : read_(reader), usual_(std::move(usualPicture)) {}

  const Picture& Get(const std::string& file) {
    if (file.empty()) return usual_;
    const auto known = pictures_.find(file);
    if (known != pictures_.end()) return known->second;
    return pictures_.emplace(file, read_(file)).first->second;
  }

 private:
  const PictureReader& read_;
  const Picture usual_;
  std::map<std::string, Picture> pictures_;
};

}  // namespace

std::unique_ptr<Scanner> MakeScanner(const Profile& profile, const PictureReader& read,
                                     Picture onBed) {
  ScannerConfig config = profile.config;
  Equipment& equipment = EquipmentOf(config);
  PictureShelf shelf(read,
                     profile.originalFile.empty() ? std::move(onBed) : read(profile.originalFile));
  equipment.onBed = shelf.Get("");
  if (equipment.optionUnit == OptionUnit::kFeeder) {
    for (const Profile::Pages& pages : profile.pages) {
      equipment.feederPages.push_back(shelf.Get(pages.file));
      equipment.feederCopies.push_back(pages.copies);
    }
  }
  return MakeScanner(std::move(config));
}

}  // namespace simulator
