// The value of --channel: which channel of an episode shows which file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace tarnwick {

enum class ChannelKind : std::uint8_t { file, camera, episode };

// A V4L2 device is a camera, a name that ends in .metal an episode, and any other a picture or a
// movie.
ChannelKind channelKindOf(const std::filesystem::path& place);

struct ChannelWord {
    // Numbers of channels, each in [0, 3], at least one: {3, 0} is channel 0 of the episode that
    // channel 3 shows.
    std::vector<std::size_t> address;
    std::filesystem::path place; // not empty

    bool operator==(const ChannelWord&) const = default;
};

// "0=FILE" or "3.0=FILE". Absent if the text has another form.
std::optional<ChannelWord> channelWord(std::string_view text);

} // namespace tarnwick
