// A walkthrough: stages and an episode.
#include "TarnwickCore/Walkthroughs/Walkthrough.h"

#include "fuzz/Input.h"
#include "fuzz/Law.h"

using namespace tarnwick;
using namespace tarnwick::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    Choices input(bytes, size);
    const std::int64_t capacity = static_cast<std::int64_t>(input.below(42)) - 1;
    std::vector<std::string> stages;
    while (stages.size() < 3 && input.flag())
        stages.push_back(input.text());
    const std::string episode = input.rest();
    const auto all = Walkthrough::stages(episode, EpisodeMeta::parse(episode), stages, capacity);
    law(all.size() == stages.size() + 1, "each source is a stage");
    for (const WalkthroughStage& stage : all)
        for (const WalkthroughPage& page : stage.pages)
            law(!page.lines.empty() && static_cast<std::int64_t>(page.lines.size()) <=
                                           std::max<std::int64_t>(capacity, 1),
                "a page has lines, and no more than its capacity");
    return 0;
}
