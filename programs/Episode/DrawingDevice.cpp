#include "programs/Episode/DrawingDevice.h"

namespace tarnwick {

void DrawingDevice::replaceIfLost() {
    if (!device_->isLost())
        throw;
    device_ = drawingDevice();
}

void DrawingDevice::throwIfLostAgain() const {
    if (device_->isLost())
        failure(device_->info().name + " was lost twice.");
}

} // namespace tarnwick
