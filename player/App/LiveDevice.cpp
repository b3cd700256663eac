#include "player/App/LiveDevice.h"

#include "player/Drawing/DrawingDevice.h"

#include <QMetaObject>
#include <algorithm>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr int firstRetry = 1000;    // milliseconds; doubled after each failure
constexpr int longestRetry = 30000; // milliseconds
constexpr const char* reopening = "The device was lost. It is being opened again.";

} // namespace

LiveDevice::LiveDevice() : device_(openDrawingDevice()) {
    if (!device_)
        absence_ = gpu::Device::absence();
    retry_.setSingleShot(true);
    retry_.setInterval(firstRetry);
    connect(&retry_, &QTimer::timeout, this, &LiveDevice::openLater);
}

LiveDevice::~LiveDevice() = default;

void LiveDevice::reopen() {
    if (!device_)
        return;
    // Its last reference may wait for the driver.
    opening_.async([lost = std::exchange(device_, nullptr)] {});
    absence_ = reopening;
    emit changed();
    openLater();
}

void LiveDevice::openLater() {
    opening_.async([this] {
        auto device = openDrawingDevice();
        std::string absence = device ? std::string() : gpu::Device::absence();
        QMetaObject::invokeMethod(
            this, [this, device, absence] { take(device, absence); }, Qt::QueuedConnection);
    });
}

void LiveDevice::take(std::shared_ptr<gpu::Device> device, std::string absence) {
    if (device) {
        retry_.setInterval(firstRetry);
    } else {
        retry_.start();
        retry_.setInterval(std::min(2 * retry_.interval(), longestRetry));
    }
    device_ = std::move(device);
    absence_ = std::move(absence);
    emit changed();
}

} // namespace tarnwick::player
