// The cameras of the machine.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tarnwick {

struct Camera {
    std::filesystem::path device; // "/dev/video0"
    std::string name;             // of the driver: "Integrated Camera"
};

// The V4L2 devices that give pictures, by their numbers. Blocks.
std::vector<Camera> allCameras();

} // namespace tarnwick
