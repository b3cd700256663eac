// An episode of a site: the state that its page shows.
#pragma once

#include "TarnwickServe/EpisodeOutcome.h"
#include "TarnwickServe/Site.h"

#include <memory>
#include <span>
#include <string>

namespace tarnwick {

struct SiteEpisode {
    std::string name; // of its file
    std::string title;
    std::string teaches;
    bool isCompiled = false; // at least once
    // The newest that could be drawn; null without one.
    std::shared_ptr<const std::string> document{};
    // Of the document, SHA-256; empty without one. A page keeps it over the end of a server and the
    // start of the next one, so it is no number that a server counts.
    std::string documentDigest{};
    std::string failure{}; // of the newest text; one sentence, or empty
    std::vector<ShownFinding> findings{};

    // Takes the result of the newest text. The last document stays if this one cannot be drawn.
    void take(EpisodeOutcome outcome);
};

// The pages, documents and states. With `isSingle` the first page is that of the only episode, else
// it lists them. docs/live.md describes the addresses and the members of the states.
Site siteOf(std::span<const SiteEpisode> episodes, bool isSingle);

} // namespace tarnwick
