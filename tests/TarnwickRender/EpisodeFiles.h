// The episodes that come with the project, without the stages of walkthroughs.
#pragma once

#include <algorithm>
#include <filesystem>
#include <vector>

namespace tarnwick {

inline std::vector<std::filesystem::path> episodeFiles() {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(EPISODES))
        if (entry.path().extension() == ".metal")
            files.push_back(entry.path());
    std::ranges::sort(files);
    return files;
}

} // namespace tarnwick
