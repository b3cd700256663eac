// The files of the inputs that a performance names.
#pragma once

#include "TarnwickCore/Performance/Performance.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

// The file as it is now, with its whole path; absent if it cannot be read. Blocks.
std::optional<PerformedFile> performedFile(const std::filesystem::path& file);

// The performance, or changes of one, whose inputs name whole paths, as a file in `folder` keeps
// them: with lengths and digests, and with relative paths below the folder. Files that cannot be
// read are left out. Blocks.
Performance keptIn(const std::filesystem::path& folder, Performance performance);
std::vector<Performance::Change> keptIn(const std::filesystem::path& folder,
                                        std::vector<Performance::Change> changes);

// The performance of a file in `from`, as a file in `folder` keeps it: paths below it become
// relative, all others are whole.
Performance movedTo(const std::filesystem::path& folder, Performance performance,
                    const std::filesystem::path& from);

struct FoundInputs {
    Performance performance; // with whole paths, and without missing files
    // One for each file that is missing or has changed.
    std::vector<std::string> sentences{};
};
// Looks for the files of a performance whose file is in `folder`. Blocks.
FoundInputs foundInputs(Performance performance, const std::filesystem::path& folder);

// The performance with that file as the input throughout. An input replaces those of the same
// channel and of the episode that it showed; a sound also replaces levels.
Performance withInput(Performance performance, const std::string& name, const PerformedFile& file);

// Without that sound file.
Performance withoutSound(Performance performance, const std::string& file);
// Whether a sound file is played at any time.
bool playsSound(const Performance& performance);

// All sets of inputs that the performance has, in the order of their times, each once.
std::vector<PerformedInputs> inputSets(const Performance& performance);

} // namespace tarnwick
