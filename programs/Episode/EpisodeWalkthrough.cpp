#include "programs/Episode/EpisodeWalkthrough.h"

#include "TarnwickCore/Findings.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/Episode/EpisodeFile.h"
#include "programs/Terminal/Findings.h"

#include <algorithm>

namespace tarnwick {
namespace {

std::string failedStage(std::size_t index, const Episode& stage, const ShaderError& error) {
    const std::string mistake = firstError(findingsOf(stage, error.diagnostics));
    return "Stage " + std::to_string(index + 1) + ", " + stage.path +
           ", does not compile: " + (mistake.empty() ? firstErrorLine(error.raw) : mistake + ".");
}

} // namespace

std::vector<WalkthroughStage>
EpisodeWalkthrough::stages(const WalkthroughRenderer& renderer) const {
    std::vector<std::string> before;
    for (std::size_t stage = 0; stage + 1 < episodes.size(); ++stage)
        before.push_back(episodes[stage].text);
    return Walkthrough::stages(episode().text, episode().meta, before, renderer.capacity());
}

WalkthroughRenderer walkthroughRenderer(std::int64_t width, std::int64_t height) {
    if (std::min(width, height) < WalkthroughLayout::leastSide)
        misuse("Pages require at least " + std::to_string(WalkthroughLayout::leastSide) +
               " pixels in width and height, not " + std::to_string(width) + "x" +
               std::to_string(height) + ".");
    return {width, height};
}

EpisodeWalkthrough episodeWalkthroughOf(const Arguments& arguments) {
    const auto stages = arguments.values("--stages");
    std::vector<std::string_view> paths(stages.begin(), stages.end());
    paths.push_back(arguments.operand());
    EpisodeWalkthrough walkthrough;
    for (const std::string_view path : paths)
        walkthrough.episodes.push_back(episodeAt(path));
    return walkthrough;
}

std::vector<std::shared_ptr<const ShaderProgram>>
programsOf(const EpisodeWalkthrough& walkthrough, gpu::Device& device, ProgressBar& bar) {
    std::vector<std::shared_ptr<const ShaderProgram>> programs;
    for (std::size_t index = 0; index < walkthrough.episodes.size(); ++index) {
        const Episode& stage = walkthrough.episodes[index];
        bar.doing("Compiling " + stage.path);
        try {
            programs.push_back(ShaderProgram::compile(stage, device, ShaderProgram::pixelFormat));
        } catch (const ShaderError& error) {
            bar.hide();
            printFindings(stage, error.diagnostics);
            failure(failedStage(index, stage, error));
        }
    }
    return programs;
}

} // namespace tarnwick
