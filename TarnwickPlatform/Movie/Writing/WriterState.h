// The status of a writer, which all of its threads share.
#pragma once

#include "TarnwickPlatform/Movie/MovieInput.h"

#include <mutex>
#include <optional>
#include <string>

namespace tarnwick {

// Any thread may call.
class WriterState {
  public:
    MovieWriterStatus status() const {
        std::lock_guard lock(mutex);
        return status_;
    }

    std::optional<std::string> errorText() const {
        std::lock_guard lock(mutex);
        return errorText_;
    }

    void say(std::string text) {
        std::lock_guard lock(mutex);
        errorText_ = std::move(text);
    }

    // Keeps the first error. No effect after the writer has ended.
    void fail(std::string text) {
        std::lock_guard lock(mutex);
        if (status_ != MovieWriterStatus::unknown && status_ != MovieWriterStatus::writing)
            return;
        status_ = MovieWriterStatus::failed;
        errorText_ = std::move(text);
    }

    // Sets the status to `to` if it is `from`. Whether it was.
    bool change(MovieWriterStatus from, MovieWriterStatus to) {
        std::lock_guard lock(mutex);
        if (status_ != from)
            return false;
        status_ = to;
        return true;
    }

  private:
    mutable std::mutex mutex;
    MovieWriterStatus status_ = MovieWriterStatus::unknown;
    std::optional<std::string> errorText_;
};

} // namespace tarnwick
