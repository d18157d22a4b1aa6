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
      : read(reader), usual(std::move(usualPicture)) {}

  const Picture& Get(const std::string& file) {
    if (file.empty()) return usual;
    const auto known = pictures.find(file);
    if (known != pictures.end()) return known->second;
    return pictures.emplace(file, read(file)).first->second;
  }

 private:
  const PictureReader& read;
  const Picture usual;
  std::map<std::string, Picture> pictures;
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
