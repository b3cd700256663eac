#include "TarnwickRender/Movies/ExportState.h"

#include "TarnwickBase/WaitedTime.h"

#include <thread>

namespace tarnwick {

void ExportState::fail(const ExportError& error) {
    const std::lock_guard lock(mutex_);
    if (!error_)
        error_ = error;
    changes_.notify_all();
}

void ExportState::setGround(std::shared_ptr<const ExportGround> ground) {
    const std::lock_guard lock(mutex_);
    ground_ = std::move(ground);
    changes_.notify_all();
}

std::shared_ptr<const ExportGround> ExportState::groundAfter(const ExportGround& lost) {
    std::unique_lock lock(mutex_);
    isGroundWanted_ = true;
    changes_.wait(lock, [&] { return error_ || ground_.get() != &lost; });
    isGroundWanted_ = false;
    return error_ ? nullptr : ground_;
}

bool ExportState::isGroundWanted() const {
    const std::lock_guard lock(mutex_);
    return isGroundWanted_;
}

bool ExportState::hasFailed() const {
    const std::lock_guard lock(mutex_);
    return error_.has_value();
}

void ExportState::throwIfFailed() const {
    const std::lock_guard lock(mutex_);
    if (error_)
        throw *error_;
}

ExportError writerError(const MovieWriter& writer) {
    return ExportError(ExportError::Writer{writer.errorText().value_or("unknown")});
}

bool waitUntilReady(const MovieInput& input, const MovieWriter& writer, ExportState& state,
                    std::chrono::nanoseconds patience) {
    WaitedTime waited;
    while (!state.hasFailed()) {
        if (input.isReadyForMoreMediaData())
            return true;
        if (writer.status() == MovieWriterStatus::failed)
            state.fail(writerError(writer));
        else if (waited.look() > patience)
            state.fail(ExportError(ExportError::Writer{"the writer stalled waiting for the " +
                                                       std::string(input.mediaType()) + " track"}));
        else
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return false;
}

} // namespace tarnwick
