// The channels of episodes, remembered in the user's state folder.
#pragma once

#include "player/Channels/ChannelChoice.h"

#include <filesystem>

namespace tarnwick::player {

// XDG_STATE_HOME/tarnwick/channels.json (XDG Base Directory Specification 0.8); default: below
// ~/.local/state.
std::filesystem::path channelsFile();

// The choices that were remembered for an episode; all none for another one, and if `file` cannot
// be read. Blocks.
ChannelChoices rememberedChannels(const std::filesystem::path& file,
                                  const std::filesystem::path& episode);

// Remembers them, as the newest of at most mostRemembered episodes. Choices without a path are left
// out. A file that cannot be written is ignored. Blocks.
void rememberChannels(const std::filesystem::path& file, const std::filesystem::path& episode,
                      const ChannelChoices& choices);

inline constexpr std::size_t mostRemembered = 500;

} // namespace tarnwick::player
