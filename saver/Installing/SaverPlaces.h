// The files and folders in which desktops look for savers.
#pragma once

#include <filesystem>

namespace tarnwick {

struct SaverPlaces {
    std::filesystem::path savers;       // bundles: XDG_DATA_HOME/tarnwick/savers
    std::filesystem::path entries;      // desktop entries of savers, for mate-screensaver
    std::filesystem::path xscreensaver; // the user's settings of XScreenSaver: ~/.xscreensaver
    // The descriptions that XScreenSaver's settings read: a folder of the system. XScreenSaver is
    // installed if the folder exists.
    std::filesystem::path descriptions;
    // tarnwick-saver in a folder from which mate-screensaver runs programs: it runs no others.
    std::filesystem::path mateProgram;
};

// The user's, by XDG_DATA_HOME and HOME (XDG Base Directory Specification 0.8).
SaverPlaces saverPlaces();

} // namespace tarnwick
