// The inputs of an episode for movies and stills: the same at each time, however often it is drawn.
#pragma once

#include "TarnwickRender/Channels/Channel.h"
#include "TarnwickRender/Channels/ChannelSources.h"
#include "TarnwickRender/FrameInputs.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>

namespace tarnwick {

// How files are opened. Empty: by reading them in the calls that need them, which wait.
struct FileOpeners {
    std::function<std::unique_ptr<Channel>(const std::filesystem::path&, gpu::Device&)> channel{};
    std::function<std::unique_ptr<FrameInputs>(const std::filesystem::path&, gpu::Device&)> sound{};
};

struct InputSources {
    ChannelSources channels{};
    bool hearsOwnSound = false;        // if it has one; otherwise silence
    std::filesystem::path soundFile{}; // a media file that is heard instead; empty: none
    FileOpeners open{};                // also for the episodes of channels
};

// Open channels, which several inputs of one picture size share.
using OpenChannels = std::map<ChannelSource, std::shared_ptr<Channel>>;

class EpisodeInputs : public FrameInputs {
  public:
    // Opens the files. Null if the program does not read Inputs. `width` and `height` are those of
    // the picture. The device outlives this. Throws InputError. Blocks.
    static std::shared_ptr<FrameInputs> make(const std::shared_ptr<const ShaderProgram>& program,
                                             gpu::Device& device, std::int64_t width,
                                             std::int64_t height, const InputSources& sources);
    // The same with channels that are open, or are added to `open`.
    static std::shared_ptr<FrameInputs> make(const std::shared_ptr<const ShaderProgram>& program,
                                             gpu::Device& device, std::int64_t width,
                                             std::int64_t height, const InputSources& sources,
                                             OpenChannels& open);

    ShaderInputs inputs(double time, const ParamValues& values) override;
    void reset() override;
    std::vector<const gpu::Texture*> channels(double time) override;
    bool prepareSound(double time) override;
    bool prepareChannels(double time) override;

  private:
    EpisodeInputs() = default;

    std::unique_ptr<FrameInputs> sound_;                          // null: silence
    std::array<std::shared_ptr<Channel>, channelCount> channels_; // null: black
};

} // namespace tarnwick
