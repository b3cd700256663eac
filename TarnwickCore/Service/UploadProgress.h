// How far an upload has come.
#pragma once

#include "TarnwickPlatform/Net/TaskDelegate.h"

#include <functional>
#include <utility>

namespace tarnwick {

// Takes the part of the body that is sent, [0, 1], on the session's thread: it must be quick and
// must not throw. With a body, 1 comes at the end; a redirect that keeps the body begins anew.
using ProgressReport = std::function<void(double)>;

// Of one task. Says nothing while the size of the body is not known.
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
