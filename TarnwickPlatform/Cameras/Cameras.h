// The cameras of the machine.
#pragma once

#include "TarnwickPlatform/Media/MediaReader.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace tarnwick {

struct Camera {
    std::filesystem::path device; // "/dev/video0"
    std::string name;             // of the driver: "Integrated Camera"
};

// The V4L2 devices that give pictures, by their numbers. Blocks.
std::vector<Camera> allCameras();

// Reads a V4L2 device, such as /dev/video0. Throws MediaError.
std::unique_ptr<MediaReader> openCamera(const std::filesystem::path& device, MediaUse use);

} // namespace tarnwick
