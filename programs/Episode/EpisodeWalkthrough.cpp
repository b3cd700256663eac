#include "programs/Episode/EpisodeWalkthrough.h"

#include "TarnwickCore/Findings.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/CommandLine/SourceFile.h"
#include "programs/Terminal/Findings.h"

#include <algorithm>
#include <cstdio>

namespace tarnwick {
namespace {

std::string failedStage(std::size_t index, std::string_view path, std::string_view source,
                        const ShaderError& error) {
    const std::string mistake = firstError(findingsOf(source, error.diagnostics));
    return "Stage " + std::to_string(index + 1) + ", " + std::string(path) +
           ", does not compile: " + (mistake.empty() ? error.raw : mistake + ".");
}

} // namespace

std::vector<WalkthroughStage>
EpisodeWalkthrough::stages(const WalkthroughRenderer& renderer) const {
    const std::span<const std::string> all(sources);
    return Walkthrough::stages(episode(), EpisodeMeta::parse(episode()), all.first(all.size() - 1),
                               renderer.capacity());
}

WalkthroughRenderer walkthroughRenderer(std::int64_t width, std::int64_t height) {
    if (std::min(width, height) < WalkthroughLayout::leastSide)
        misuse("--size wants at least " + std::to_string(WalkthroughLayout::leastSide) +
               " pixels a side for pages that can be read.");
    return {width, height};
}

EpisodeWalkthrough episodeWalkthroughOf(const Arguments& arguments) {
    const auto stages = arguments.values(stagesOption.name);
    EpisodeWalkthrough walkthrough{.paths = {stages.begin(), stages.end()}};
    walkthrough.paths.push_back(arguments.operand("episode"));
    for (const std::string_view path : walkthrough.paths)
        walkthrough.sources.push_back(sourceText(path));
    return walkthrough;
}

std::vector<std::shared_ptr<const ShaderProgram>>
programsOf(const EpisodeWalkthrough& walkthrough, gpu::Device& device, ProgressBar& bar) {
    std::vector<std::shared_ptr<const ShaderProgram>> programs;
    for (std::size_t index = 0; index < walkthrough.sources.size(); ++index) {
        const std::string_view path = walkthrough.paths[index];
        bar.doing("Compiling " + std::string(path));
        try {
            programs.push_back(ShaderProgram::compile(walkthrough.sources[index], device,
                                                      ShaderProgram::pixelFormat));
        } catch (const ShaderError& error) {
            bar.hide();
            printFindings(path, walkthrough.sources[index], error.diagnostics);
            failure(failedStage(index, path, walkthrough.sources[index], error));
        }
    }
    return programs;
}

} // namespace tarnwick
