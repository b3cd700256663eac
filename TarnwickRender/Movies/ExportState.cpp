#include "TarnwickRender/Movies/ExportState.h"

#include "TarnwickBase/WaitedTime.h"

#include <thread>

namespace tarnwick {

void ExportState::fail(const ExportError& error) {
    const std::lock_guard lock(mutex_);
    if (!error_)
        error_ = error;
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
