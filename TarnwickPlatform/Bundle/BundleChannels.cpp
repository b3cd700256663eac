#include "TarnwickPlatform/Bundle/BundleChannels.h"

#include "TarnwickBase/WholeFile.h"

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

// Without its extension, which the address may seem to have.
fs::path placeOf(const fs::path& folder, const BundleChannel& channel, const std::string& ending) {
    return folder / "Channels" / (channel.address + ending);
}

void writeChannel(const fs::path& folder, const BundleChannel& channel) {
    if (channel.file.empty()) {
        writeWholeFile(placeOf(folder, channel, ".metal"), channel.text);
        writeWholeFile(placeOf(folder, channel, ".json"), channel.settings);
        return;
    }
    UnfinishedFile copy(placeOf(folder, channel, channel.file.extension().string()));
    std::error_code error;
    fs::copy_file(channel.file, copy.path(), error);
    if (error)
        throw BundleError(channel.file.string() + " cannot be copied into " + folder.string() +
                          ": " + error.message() + ".");
    copy.finish();
}

} // namespace

std::vector<fs::path> channelFiles(const fs::path& folder,
                                   std::span<const BundleChannel> channels) {
    std::vector<fs::path> files;
    for (const BundleChannel& channel : channels)
        if (channel.file.empty()) {
            files.push_back(placeOf(folder, channel, ".metal"));
            files.push_back(placeOf(folder, channel, ".json"));
        } else {
            files.push_back(placeOf(folder, channel, channel.file.extension().string()));
        }
    return files;
}

void writeChannels(const fs::path& folder, std::span<const BundleChannel> channels) {
    if (channels.empty())
        return;
    std::error_code error;
    fs::create_directories(folder / "Channels", error);
    if (error)
        throw BundleError((folder / "Channels").string() + " cannot be made: " + error.message() +
                          ".");
    try {
        for (const BundleChannel& channel : channels)
            writeChannel(folder, channel);
    } catch (const WholeFileError& failure) {
        throw BundleError(failure.what());
    }
}

} // namespace tarnwick
