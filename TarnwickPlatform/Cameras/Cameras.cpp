#include "TarnwickPlatform/Cameras/Cameras.h"

#include "TarnwickPlatform/Libav/Libav.h"

#include <linux/videodev2.h>
#include <sys/ioctl.h>

#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace tarnwick {
namespace {

constexpr int mostDevices = 64; // that are looked at

// A camera has a second device for the data beside its pictures.
std::string nameOf(const std::filesystem::path& device) {
    const int descriptor = open(device.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return {};
    v4l2_capability record{};
    const bool answers = ioctl(descriptor, VIDIOC_QUERYCAP, &record) == 0;
    close(descriptor);
    const auto all =
        record.capabilities & V4L2_CAP_DEVICE_CAPS ? record.device_caps : record.capabilities;
    if (!answers || !(all & V4L2_CAP_VIDEO_CAPTURE))
        return {};
    return reinterpret_cast<const char*>(record.card);
}

} // namespace

std::vector<Camera> allCameras() {
    std::vector<Camera> found;
    for (int number = 0; number < mostDevices; ++number) {
        const std::filesystem::path device = "/dev/video" + std::to_string(number);
        std::error_code error;
        if (!std::filesystem::exists(device, error))
            continue;
        if (std::string name = nameOf(device); !name.empty())
            found.push_back({device, std::move(name)});
    }
    return found;
}

std::unique_ptr<MediaReader> openCamera(const std::filesystem::path& device, MediaUse use) {
    try {
        registerLibavDevices();
    } catch (const LibavError& error) {
        throw MediaError(error.what());
    }
    return MediaReader::openDevice("v4l2", device, std::move(use));
}

} // namespace tarnwick
