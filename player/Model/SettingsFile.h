// Documents of settings, of values and of keys that a user loads and saves.
#pragma once

#include "player/Model/DocumentFile.h"

#include <cstdint>
#include <filesystem>

namespace tarnwick::player {

enum class SettingsPart : std::uint8_t {
    all,    // a saver's settings document
    values, // a settings document without keys
    keys    // a document of keys
};

// `settings` with that part of the file. The parts `all` and `keys` accept a document of keys too.
// Throws DocumentFileError. Blocks.
Settings loadedSettings(Settings settings, const std::filesystem::path& file, SettingsPart part);

// Throws DocumentFileError, also if the file exists and is neither settings nor keys: it is never
// replaced. Blocks.
void saveSettings(const Settings& settings, const std::filesystem::path& file, SettingsPart part);

} // namespace tarnwick::player
