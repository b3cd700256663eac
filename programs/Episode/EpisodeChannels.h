// The channels of an episode that the command line names.
#pragma once

#include "TarnwickCore/CommandLine/Arguments.h"
#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickCore/Performance/InputFiles.h"
#include "TarnwickRender/Channels/ChannelSources.h"

#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>

namespace tarnwick {

struct NamedChannel;
using NamedChannels = std::array<std::unique_ptr<NamedChannel>, channelCount>; // null: black

// A file, or an episode with its settings and channels.
struct NamedChannel {
    std::filesystem::path file{};
    std::optional<Episode> episode{};
    Settings settings{};
    NamedChannels channels{};
};

// The channels of --channel, checked before anything is compiled or drawn; channels without the
// option are those of `performed`. Throws CommandError for cameras, files that are missing and an
// episode that reads no channels.
NamedChannels episodeChannelsOf(const Arguments& arguments, const Episode& episode,
                                std::span<const InputFile> performed = {});

// With the episodes compiled. Throws CommandError.
ChannelSources channelSourcesOf(const NamedChannels& channels, gpu::Device& device);

constexpr Option channelOption{
    .name = "--channel",
    .value = "N=FILE",
    .help = "show a picture, a movie or another episode as channel N of an episode with Inputs; a "
            "movie repeats; 3.0=FILE is channel 0 of the episode that channel 3 shows",
    .byDefault = "black",
    .isRepeatable = true};

} // namespace tarnwick
