// The channels of an episode that the command line names.
#pragma once

#include "TarnwickCore/CommandLine/Arguments.h"
#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickCore/Performance/Timeline.h"
#include "TarnwickRender/Channels/PerformedSources.h"

#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

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

// The channels of --channel, checked before anything is compiled or drawn. Throws CommandError for
// cameras, files that are missing and an episode that reads no channels.
NamedChannels episodeChannelsOf(const Arguments& arguments, const Episode& episode);
// Their names and files, an episode before its channels. Throws CommandError for other words.
std::vector<std::pair<std::string, std::string>> givenChannels(const Arguments& arguments);

// With the episodes compiled. Throws CommandError.
ChannelSources channelSourcesOf(const NamedChannels& channels, gpu::Device& device);

// The channels of a set of inputs of a performance.
struct NamedInputs {
    PerformedInputs inputs;
    NamedChannels channels{};
};
// All sets of a performance with whole paths; none of settings. Throws CommandError.
std::vector<NamedInputs> performedChannelsOf(const Timeline& timeline, const Episode& episode);
// With the episodes compiled, each once. The sound is the file of the set, or else the episode's
// own. Throws CommandError.
std::vector<PerformedSource> performedSourcesOf(const std::vector<NamedInputs>& sets,
                                                gpu::Device& device);

constexpr Option channelOption{
    .name = "--channel",
    .value = "N=FILE",
    .help = "show a picture, a movie or another episode as channel N of an episode with Inputs; a "
            "movie repeats; 3.0=FILE is channel 0 of the episode that channel 3 shows",
    .byDefault = "black",
    .isRepeatable = true};

} // namespace tarnwick
