// tarnwick --manual FOLDER: the manual pages of the programs and of each command, for the build.
#pragma once

#include "programs/Commands/Command.h"

#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace tarnwick {

struct ManualFile {
    std::string name; // "tarnwick-export.1"
    std::string roff;
};

// tarnwick.1, a page for each command, and tarnwick-player.1. The page of the command `saver` is
// that of tarnwick-saver too.
std::vector<ManualFile> manualFiles(std::span<const Command* const> commands);

// Writes them into the folder of the one word, which exists. Throws CommandError.
Status writeManual(std::span<const Command* const> commands, std::span<const char* const> words);

} // namespace tarnwick
