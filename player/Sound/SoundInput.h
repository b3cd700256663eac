// The sound that episodes react to, as the user chooses it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwick::player {

struct SoundInput {
    enum class Kind : std::uint8_t {
        own,        // the sound of the episode itself
        microphone, // or any other input of the system
        desktop,    // what the system plays
        file,       // a media file, over the time of the episode
    };

    Kind kind = Kind::own;
    std::string name{}; // of the device (empty: the default), or the path of the file

    bool operator==(const SoundInput&) const = default;

    // "own", "microphone", "desktop" or the path of a file.
    static SoundInput of(std::string_view words);
};

} // namespace tarnwick::player
