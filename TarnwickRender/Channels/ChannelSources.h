// The pictures that an episode reads as channels 0 to 3.
#pragma once

#include "TarnwickCore/Performance/Timeline.h"
#include "TarnwickRender/ShaderProgram.h"

#include <array>
#include <compare>
#include <cstddef>
#include <filesystem>
#include <memory>

namespace tarnwick {

inline constexpr std::size_t channelCount = 4;

struct ChannelEpisode;

// Black without both.
struct ChannelSource {
    std::filesystem::path file{};                    // a picture or a movie; empty: none
    std::shared_ptr<const ChannelEpisode> episode{}; // null: none

    bool isNone() const { return file.empty() && !episode; }
    auto operator<=>(const ChannelSource&) const = default;
};

using ChannelSources = std::array<ChannelSource, channelCount>;

// An episode whose picture a channel shows: at the same time and size, with the pointer in the
// middle. It hears its own sound.
struct ChannelEpisode {
    std::shared_ptr<const ShaderProgram> program; // never null
    Timeline timeline{};                          // fitted to its parameters
    ChannelSources channels{};
};

} // namespace tarnwick
