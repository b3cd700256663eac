// Why a track cannot be what is asked for: what MovieWriter::add refuses, for callers that want to
// know before they have a writer.
#pragma once

#include "TarnwickPlatform/Movie/MovieSettings.h"

#include <optional>
#include <string>

namespace tarnwick {

// One sentence, or nothing where the settings are good.
std::optional<std::string> settingsError(const VideoSettings& settings, MovieFileType type);
std::optional<std::string> settingsError(const AudioSettings& settings);

} // namespace tarnwick
