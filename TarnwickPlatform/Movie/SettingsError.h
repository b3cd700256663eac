// Checks the settings of a track as MovieWriter::add does, for callers that have no writer yet.
#pragma once

#include "TarnwickPlatform/Movie/MovieSettings.h"

#include <optional>
#include <string>

namespace tarnwick {

// One sentence that says why the settings are invalid; absent if they are valid.
std::optional<std::string> settingsError(const VideoSettings& settings, MovieFileType type);
std::optional<std::string> settingsError(const AudioSettings& settings);

} // namespace tarnwick
