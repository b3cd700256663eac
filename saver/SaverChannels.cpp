#include "saver/SaverChannels.h"

#include "TarnwickPlatform/Bundle/TextFile.h"
#include "TarnwickRender/Channels/FileChannel.h"
#include "TarnwickRender/FrameInputs.h"
#include "TarnwickRender/ShaderError.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <utility>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

class Reading {
  public:
    Reading(fs::path folder, gpu::Device& device, std::vector<std::string>& remarks)
        : folder_(std::move(folder)), device_(device), remarks_(remarks) {}

    // `before` is the address of the episode that shows the channels, with a point.
    ChannelSources channels(const std::string& before) {
        ChannelSources sources;
        for (std::size_t index = 0; index < channelCount; ++index)
            if (const auto file = fileOf(before + std::to_string(index)))
                sources[index] = source(*file);
        return sources;
    }

  private:
    std::optional<fs::path> fileOf(const std::string& address) const {
        std::error_code error;
        for (const auto& entry : fs::directory_iterator(folder_, error))
            if (entry.path().stem() == address && entry.path().extension() != ".json" &&
                entry.is_regular_file(error))
                return entry.path();
        return std::nullopt;
    }

    ChannelSource source(const fs::path& file) {
        try {
            if (file.extension() == ".metal")
                return {.episode = episode(file)};
            FileChannel(file, device_).at(0); // reads it
            return {.file = file};
        } catch (const std::exception& error) { // of the compiler, of documents and of files
            remarks_.push_back("Channel " + file.stem().string() + " is black: " + error.what());
            return {};
        }
    }

    std::shared_ptr<const ChannelEpisode> episode(const fs::path& file) {
        const Episode read = Episode::of(fileText(file).value_or(""));
        auto program = ShaderProgram::compile(read, device_, ShaderProgram::pixelFormat);
        Settings settings;
        if (const auto text = fileBytes(fs::path(file).replace_extension(".json")))
            settings = Settings::decode(*text).fitted(program->params());
        return std::make_shared<const ChannelEpisode>(
            ChannelEpisode{.program = std::move(program),
                           .timeline = std::move(settings),
                           .channels = channels(file.stem().string() + ".")});
    }

    fs::path folder_;
    gpu::Device& device_;
    std::vector<std::string>& remarks_;
};

} // namespace

ChannelSources bundledChannels(const Bundle& bundle, gpu::Device& device,
                               std::vector<std::string>& remarks) {
    return Reading(bundle.folder() / "Channels", device, remarks).channels("");
}

bool keepState(const ChannelSources& channels) {
    return std::ranges::any_of(channels, [](const ChannelSource& source) {
        const ChannelEpisode* episode = source.episode.get();
        return !source.file.empty() || (episode != nullptr && (episode->program->isParticles() ||
                                                               episode->program->readsPrevious() ||
                                                               keepState(episode->channels)));
    });
}

} // namespace tarnwick
