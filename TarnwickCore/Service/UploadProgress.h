// The progress of an upload.
#pragma once

#include "TarnwickPlatform/Net/TaskDelegate.h"

#include <functional>
#include <utility>

namespace tarnwick {

// Receives the fraction of the body that is sent, [0, 1], on the thread of the session. It must be
// quick and must not throw. If there is a body, the last call has 1; after a redirect that keeps
// the body, reports begin again.
using ProgressReport = std::function<void(double)>;

// The delegate of one task. Reports nothing while the size of the body is unknown.
class UploadProgress : public TaskDelegate {
  public:
    explicit UploadProgress(ProgressReport report) : report_(std::move(report)) {}

    void didSendBody(std::int64_t sent, std::int64_t expected) override {
        if (expected >= 1 && report_)
            report_(static_cast<double>(sent) / static_cast<double>(expected));
    }

  private:
    ProgressReport report_;
};

} // namespace tarnwick
