#include "programs/Episode/EpisodeLoop.h"

#include "TarnwickRender/Channels/EpisodeInputs.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/Terminal/ProgressBar.h"

#include <array>
#include <cstdio>
#include <string>

namespace tarnwick {

void sayLoopStart(double asked, double start) {
    if (start > asked)
        std::fprintf(stderr,
                     "tarnwick: The loop starts at %g s, not at %g s, because its crossfade uses "
                     "the seconds before its start.\n",
                     start, asked);
}

FoundLoop findLoop(const std::shared_ptr<const ShaderProgram>& program, gpu::Device& device,
                   const Timeline& timeline, const LoopSearch& search, std::string_view path,
                   const ChannelSources& channels) {
    if (program->needsRun())
        failure(std::string(path) + " is a " + (program->isMesh() ? "grid" : "particle") +
                " episode: loops can only be found for fragment episodes.");
    std::optional<FoundLoop> found;
    try {
        const auto inputs = EpisodeInputs::make(program, device, LoopFinder::stillWidth,
                                                LoopFinder::stillHeight, {.channels = channels});
        ProgressBar bar("Length");
        bar.doing("Drawing " + std::string(path));
        found = LoopFinder::best(
            program, device, timeline, search.start, search.around, search.range, search.fps,
            [&](std::int64_t done, std::int64_t total) {
                bar.show(done, total);
                return true;
            },
            inputs.get());
    } catch (const InputError& error) {
        failure(error.what());
    }
    if (!found && device.isLost())
        failure(device.info().name + " was lost.");
    if (!found)
        misuse("The range contains no length of two frames or more.");
    return *found;
}

std::string loopText(const FoundLoop& found, std::int64_t fps) {
    const auto frames = static_cast<double>(fps) * found.length;
    std::array<char, 120> text{};
    std::snprintf(text.data(), text.size(),
                  "%.9g seconds: %.0f frames, whose ends differ by %.2f of 255 values",
                  found.length, frames, found.difference);
    return text.data();
}

} // namespace tarnwick
