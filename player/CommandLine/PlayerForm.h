// tarnwick-player's words. Without Qt, so that the command line knows them too.
#pragma once

#include "TarnwickCore/CommandLine/Option.h"

#include <string_view>

namespace tarnwick::player {

extern const CommandForm playerForm;
extern const std::string_view playerSummary; // one sentence

} // namespace tarnwick::player
