#include "player/Sound/SoundInput.h"

namespace tarnwick::player {

SoundInput SoundInput::of(std::string_view words) {
    if (words == "own")
        return {};
    if (words == "microphone")
        return {.kind = Kind::microphone};
    if (words == "desktop")
        return {.kind = Kind::desktop};
    return {.kind = Kind::file, .name = std::string(words)};
}

} // namespace tarnwick::player
