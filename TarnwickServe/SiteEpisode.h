// An episode of a site: the state that its page shows.
#pragma once

#include "TarnwickServe/EpisodeOutcome.h"
#include "TarnwickServe/Site.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace tarnwick {

struct SiteEpisode {
    std::string name; // of its file
    std::string title;
    std::string teaches;
    bool isCompiled = false; // at least once
    // The newest that could be drawn; null without one. Its number ascends.
    std::shared_ptr<const std::string> document{};
    std::uint64_t documentNumber = 0;
    std::string failure{}; // of the newest text; one sentence, or empty
    std::vector<ShownFinding> findings{};

    // Takes the result of the newest text. The last document stays if this one cannot be drawn.
    void take(EpisodeOutcome outcome, std::uint64_t number);
};

// The pages, documents and states. With `isSingle` the first page is that of the only episode, else
// it lists them. docs/live.md describes the addresses and the members of the states.
Site siteOf(std::span<const SiteEpisode> episodes, bool isSingle);

} // namespace tarnwick
