// What an artist chose for a channel of an episode.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>

namespace tarnwick::player {

struct ChannelChoice {
    enum class Kind : std::uint8_t { none, file, camera, episode };

    Kind kind = Kind::none;
    std::filesystem::path place{}; // of the file, the device or the episode; empty: never saved
    std::uint64_t document = 0;    // OpenDocument::id of an episode; 0: the one at `place`

    bool operator==(const ChannelChoice&) const = default;
};

using ChannelChoices = std::array<ChannelChoice, 4>;

// The choice that a path means: a V4L2 device is a camera, a name that ends in .metal an episode,
// and any other a file.
ChannelChoice choiceOf(const std::filesystem::path& place);

struct NumberedChoice {
    std::size_t channel = 0; // [0, 3]
    ChannelChoice choice;
};

// "0=FILE", with the absolute path. Absent if the text has another form.
std::optional<NumberedChoice> numberedChoice(std::string_view text);

} // namespace tarnwick::player
