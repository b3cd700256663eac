// The pages of a local server. They contain nothing of an episode but its address; their script
// reads the rest and sets it as text.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

struct LivePageAddresses {
    std::string_view root;    // of the site, relative to the page: "./", "../"
    std::string_view episode; // of webAddress(); empty: the page lists all episodes
};

std::string livePage(const LivePageAddresses& addresses); // HTML

// The player of pages (webRuntime) and the modules that follow a server, as one module.
std::string liveScript();
std::string_view liveStyle(); // CSS; the build writes LiveStyle.cpp

} // namespace tarnwick
