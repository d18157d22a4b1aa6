#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace pmddb832::fuzz {

// Takes a seed of the fuzz target that is named.
using TakeSeed = std::function<void(const std::string& target, std::vector<std::uint8_t> seed)>;

// The seeds of the targets that read files: the captures of a folder, the scanners and fault
// scripts of another, settings that are written here, and the pictures of the tests.
void AddReaderSeeds(const std::filesystem::path& captures, const std::filesystem::path& profiles,
                    const TakeSeed& take);

}  // namespace pmddb832::fuzz
