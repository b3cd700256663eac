// The pictures that an episode reads as channels 0 to 3, as part of a record.
#pragma once

#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickRender/ShaderProgram.h"
#include "player/Channels/FrameSource.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>

namespace tarnwick::player {

inline constexpr std::size_t channelCount = 4;

// Black without both.
struct LiveChannel {
    std::shared_ptr<FrameSource> source;
    std::uint64_t document = 0; // an open episode, whose picture this is; 0: none

    bool operator==(const LiveChannel&) const = default;
};

using LiveChannelSet = std::array<LiveChannel, channelCount>;

// An open episode that a channel shows. Channels may also read the episode that is drawn, and each
// other in a ring: then one of them has the frame before.
struct LiveEpisode {
    std::shared_ptr<const ShaderProgram> program; // never null
    std::shared_ptr<const Settings> settings;     // never null
    LiveChannelSet channels;

    bool operator==(const LiveEpisode& other) const {
        return program == other.program && *settings == *other.settings &&
               channels == other.channels;
    }
};

// Constant once it is published.
struct LiveChannels {
    std::uint64_t document = 0;                    // the one that is drawn
    LiveChannelSet channels;                       // of it
    std::map<std::uint64_t, LiveEpisode> episodes; // by document: those that channels show

    bool operator==(const LiveChannels&) const = default;
};

} // namespace tarnwick::player
