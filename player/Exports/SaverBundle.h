// A screen saver of an episode as it is edited now.
#pragma once

#include "player/Exports/EpisodeOrders.h"
#include "saver/Installing/InstalledSavers.h"

#include <filesystem>
#include <stdexcept>

namespace tarnwick::player {

// what() is one sentence.
struct SaverBundleError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Makes `folder`, or if that exists the same name with a number (NewPlace.h), the bundle of the
// episode with its settings, whose name becomes `name`. Makes the folders above. Returns the place.
// Throws SaverBundleError. Blocks.
std::filesystem::path makeSaver(const EpisodeCopy& episode, const std::string& name,
                                const std::filesystem::path& folder);

// Installs the episode with its settings as the screen saver `name` (installSaver). Throws
// InstallError. Blocks.
InstallReport installEpisode(const EpisodeCopy& episode, const std::string& name,
                             const SaverPlaces& places);

// The user's folder for savers (SaverPlaces.h).
std::filesystem::path saversFolder();

} // namespace tarnwick::player
