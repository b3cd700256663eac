// Where the programs find each other and the data that comes with them, in the build tree and
// after `cmake --install`. All places are found from the folder of the running program, so an
// installed tree can be moved as a whole and can be read-only.
#pragma once

#include <filesystem>

namespace tarnwick {

// The table of places is in the source. A new file that comes with the programs is one case here,
// one row there, and one install() rule.
enum class InstalledFile {
    commandLine,        // tarnwick
    saver,              // tarnwick-saver
    player,             // tarnwick-player
    compilerWorker,     // tarnwick-msl-worker
    precompiledLibrary, // metal.pch, beside the worker
    saverBundle,        // Tarnwick.saver, a folder: the saver's own episode
    episodes,           // a folder of .metal files
    handbook,           // its first page, if scripts/handbook has built it
    count,              // not a file
};

// The path of `file` for the running program: the first of its places that exists, else its place
// in an installed tree. Any thread.
std::filesystem::path installedFile(InstalledFile file);

// The same for a program in the folder `programs`.
std::filesystem::path installedFile(InstalledFile file, const std::filesystem::path& programs);

} // namespace tarnwick
