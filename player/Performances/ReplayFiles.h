// The files that a performance names, as live inputs of its replay.
#pragma once

#include "TarnwickCore/Performance/Performance.h"
#include "TarnwickGPU/Device.h"
#include "player/Drawing/LiveRecord.h"

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tarnwick::player {

// The episodes that channels show, as they are in their files; each by its path. Those that cannot
// be drawn are left out.
struct ReplayEpisodes {
    struct Drawn {
        std::shared_ptr<const ShaderProgram> program; // never null
        Settings settings;                            // fitted to it
    };
    std::map<std::filesystem::path, Drawn> episodes{};
    std::vector<std::string> sentences{}; // about episodes that are left out
};

// Reads and compiles the episodes of a performance with whole paths. Any thread; blocks for
// seconds.
ReplayEpisodes readReplayEpisodes(const Performance& performance,
                                  const std::shared_ptr<gpu::Device>& device);

// The inputs of the performance: those of its export, read on other threads. `tell` gets a sentence
// about a file that cannot be read, on any thread.
std::shared_ptr<const ReplayedInputs>
replayedInputsOf(const Performance& performance, const ReplayEpisodes& episodes,
                 const std::function<void(const std::string&)>& tell);

} // namespace tarnwick::player
