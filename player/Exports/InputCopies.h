// The inputs of a document as a child process reads them.
#pragma once

#include "TarnwickCore/Animation/Settings.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tarnwick::player {

struct ChannelCopy {
    std::string address;              // as --channel has it: "0"; "3.0" is a channel of channel 3
    std::filesystem::path file{};     // a picture or a movie; empty: an episode
    std::string text{};               // of the episode, as it is now
    Settings settings{};              // of the episode
    std::filesystem::path document{}; // the file of the episode; empty if it was never saved

    bool operator==(const ChannelCopy&) const = default;
};

struct InputCopies {
    std::vector<ChannelCopy> channels{};
    std::filesystem::path sound{}; // a file that the episode hears instead of its own sound
    bool playsSound = false;       // that file is played, too
    bool isHearing = true;         // the episode takes Inputs
    // Sentences about inputs that movies and stills do not have, such as cameras.
    std::vector<std::string> remarks{};

    bool operator==(const InputCopies&) const = default;
};

} // namespace tarnwick::player
