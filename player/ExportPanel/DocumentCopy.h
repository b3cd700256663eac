// The text and the settings of a document for a child process.
#pragma once

#include "player/App/OpenDocument.h"
#include "player/Exports/EpisodeOrders.h"

namespace tarnwick::player {

// The document as it is now, without its inputs.
inline EpisodeCopy copyOf(const OpenDocument& document) {
    return {.title = document.document().title(),
            .text = document.document().text(),
            .settings = document.document().settings()};
}

} // namespace tarnwick::player
