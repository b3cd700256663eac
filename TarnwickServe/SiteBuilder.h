// Keeps a site up to date: watches the episodes, compiles those that changed, publishes.
#pragma once

#include "TarnwickServe/EpisodeOutcome.h"
#include "TarnwickServe/SiteNews.h"
#include "TarnwickServe/SitePlace.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace tarnwick {

struct EpisodeReport {
    enum class Kind : std::uint8_t { compiled, removed };

    Kind kind = Kind::compiled;
    std::string name; // of the episode's file
    EpisodeOutcome outcome{};
    double seconds = 0; // of compiling
};

class SiteBuilder {
  public:
    // Starts a thread, which calls `compile` and then `report`. Borrows `news`. At first all
    // episodes wait to be compiled; an episode that was saved is compiled before those that wait
    // longer.
    SiteBuilder(SitePlace place, EpisodeCompiler compile, SiteNews& news,
                std::function<void(const EpisodeReport&)> report);
    // Waits for a compilation that has begun.
    ~SiteBuilder();
    SiteBuilder(const SiteBuilder&) = delete;
    SiteBuilder& operator=(const SiteBuilder&) = delete;

  private:
    struct State;

    std::unique_ptr<State> state_;
};

} // namespace tarnwick
