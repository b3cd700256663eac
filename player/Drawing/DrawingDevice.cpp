#include "player/Drawing/DrawingDevice.h"

#include <sys/resource.h>

#include <thread>
#include <unistd.h>

namespace tarnwick::player {
namespace {

constexpr int drawingNiceness = 5;

} // namespace

// A driver starts its threads with the device, and on Linux each has the priority of the thread
// that starts it.
std::shared_ptr<gpu::Device> openDrawingDevice() {
    std::shared_ptr<gpu::Device> device;
    std::thread opening([&device] {
        setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), drawingNiceness);
        device = gpu::Device::systemDefault();
    });
    opening.join();
    return device;
}

} // namespace tarnwick::player
