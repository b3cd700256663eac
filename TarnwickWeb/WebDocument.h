// The document of an episode, which the player of pages reads. docs/web.md describes its members.
#pragma once

#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickWeb/WebProgram.h"

#include <string>

namespace tarnwick {

inline constexpr int webDocumentVersion = 1;

// The title of the episode; the name of its file if it has none.
std::string webTitle(const Episode& episode);

// JSON (RFC 8259) in UTF-8, on one line. `settings` are fitted to the episode. Throws WebError if a
// function takes what no page has.
std::string webDocument(const Episode& episode, const Settings& settings,
                        const WebProgram& program);

} // namespace tarnwick
