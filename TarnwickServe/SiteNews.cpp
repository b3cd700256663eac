#include "TarnwickServe/SiteNews.h"

#include <utility>

namespace tarnwick {

void SiteNews::publish(Site site) {
    {
        const std::scoped_lock lock(mutex_);
        site.version = newest_->version + 1;
        newest_ = std::make_shared<Site>(std::move(site));
    }
    changed_.notify_all();
}

std::shared_ptr<const Site> SiteNews::newest() const {
    const std::scoped_lock lock(mutex_);
    return newest_;
}

std::uint64_t SiteNews::waitForOther(std::uint64_t version, std::stop_token stop,
                                     std::chrono::steady_clock::time_point end) {
    std::unique_lock lock(mutex_);
    changed_.wait_until(lock, stop, end, [&] { return newest_->version != version; });
    return newest_->version;
}

} // namespace tarnwick
