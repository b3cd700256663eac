// Episodes that the command line names.
#pragma once

#include "TarnwickCore/Episode/Episode.h"

#include <cstdint>
#include <string_view>

namespace tarnwick {

enum class EpisodeBytes : std::uint8_t {
    utf8, // others are a CommandError
    any,  // for a caller that reports invalid UTF-8 as a finding
};

// The episode in the file `path`. Throws CommandError, as sourceText does.
Episode episodeAt(std::string_view path, EpisodeBytes bytes = EpisodeBytes::utf8);

} // namespace tarnwick
