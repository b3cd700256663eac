// The device of a command, which may be lost.
#pragma once

#include "programs/CommandLine/CommandError.h"
#include "programs/Episode/EpisodeProgram.h"

#include <memory>

namespace tarnwick {

class DrawingDevice {
  public:
    DrawingDevice() : device_(drawingDevice()) {} // throws CommandError without a device

    gpu::Device& operator*() const { return *device_; }

    // Calls `work` with the device. If it fails by a CommandError because the device was lost,
    // calls it once more with another device, which replaces this one. Nothing that `work` makes
    // with the device may outlive a failure.
    template <class Work> auto with(const Work& work) {
        try {
            return work(*device_);
        } catch (const CommandError&) {
            replaceIfLost();
        }
        try {
            return work(*device_);
        } catch (const CommandError&) {
            throwIfLostAgain();
            throw;
        }
    }

  private:
    void replaceIfLost(); // otherwise throws the present exception again
    void throwIfLostAgain() const;

    std::shared_ptr<gpu::Device> device_;
};

} // namespace tarnwick
