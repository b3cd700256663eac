// The channels in a saver's bundle: files of its folder Channels, whose names are addresses.
#pragma once

#include "TarnwickPlatform/Bundle/Bundle.h"

#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace tarnwick {

struct BundleChannel {
    std::string address;          // "0"; "3.0" is channel 0 of the episode that channel 3 shows
    std::filesystem::path file{}; // a picture or a movie, which is copied; empty: an episode
    std::string text{};           // of the episode
    std::string settings{};       // of the episode, a document
};

// The files that writeChannels() makes in the bundle `folder`: Channels/0.jpg for a file; for an
// episode Channels/3.metal and Channels/3.json.
std::vector<std::filesystem::path> channelFiles(const std::filesystem::path& folder,
                                                std::span<const BundleChannel> channels);

// Writes each as a whole; existing files are replaced. Throws BundleError. Blocks.
void writeChannels(const std::filesystem::path& folder, std::span<const BundleChannel> channels);

} // namespace tarnwick
