// The newest site, passed from the thread that builds it to those that serve it.
#pragma once

#include "TarnwickServe/Site.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <stop_token>

namespace tarnwick {

// All functions may be called from any thread.
class SiteNews {
  public:
    // Replaces the newest site, whose version is one more than that of the last.
    void publish(Site site);

    std::shared_ptr<const Site> newest() const; // never null; empty with version 0 at first

    // Blocks until the newest site has another version than `version`, until a stop is requested or
    // until `end`. Returns the version of the newest site.
    std::uint64_t waitForOther(std::uint64_t version, std::stop_token stop,
                               std::chrono::steady_clock::time_point end);

  private:
    mutable std::mutex mutex_; // of newest_
    std::condition_variable_any changed_;
    std::shared_ptr<const Site> newest_ = std::make_shared<Site>();
};

} // namespace tarnwick
