#include "saver/GuestWork.h"

#include "TarnwickGPU/Device.h"
#include "saver/Guest/PowerSupply.h"
#include "saver/Guest/Priority.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <thread>
#include <utility>

namespace tarnwick {
namespace {

constexpr double shareOnBattery = 0.5; // of the share on mains
constexpr double powerInterval = 5;    // seconds between two looks at the power supply

// Of all threads, seconds.
double processTime() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

double allCPUs() {
    static const double count = std::max(1u, std::thread::hardware_concurrency());
    return count;
}

} // namespace

GuestWork::GuestWork(const MTKView& metal, std::optional<double> share)
    : isOnCPU_(metal.device()->info().isCPU), share_(share.value_or(isOnCPU_ ? 0.5 : 1)),
      budget_(share_, metal.preferredFramesPerSecond), cpuTime_(processTime()) {
    allCPUs(); // counted before they are restricted
    if (isOnCPU_)
        useAtMostCPUs(static_cast<std::size_t>(std::ceil(share_ * allCPUs())));
}

void GuestWork::frameDone(MTKView& metal, double now) {
    const auto begun = std::exchange(begun_, std::nullopt);
    if (!begun)
        return;
    lookAtPower(now);
    const double time = processTime();
    budget_.spend(isOnCPU_ ? (time - cpuTime_) / allCPUs() : now - *begun, now);
    cpuTime_ = time;
    metal.setDrawableScale(budget_.scale());
}

void GuestWork::lookAtPower(double now) {
    if (now - powerLook_ < powerInterval)
        return;
    powerLook_ = now;
    budget_.setShare(share_ * (runsOnBattery() ? shareOnBattery : 1));
}

} // namespace tarnwick
