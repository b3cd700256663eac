#include "saver/Guest/PowerSupply.h"

#include <fstream>
#include <string>
#include <system_error>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

// The first line of the file; empty if it cannot be read.
std::string lineOf(const fs::path& file) {
    std::string line;
    std::getline(std::ifstream(file), line);
    return line;
}

} // namespace

bool runsOnBattery(const fs::path& supplies) {
    bool discharges = false;
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(supplies, none)) {
        const fs::path& supply = entry.path();
        const bool isBattery = lineOf(supply / "type") == "Battery";
        if (!isBattery && lineOf(supply / "online") == "1")
            return false;
        discharges |= isBattery && lineOf(supply / "scope") != "Device" &&
                      lineOf(supply / "status") == "Discharging";
    }
    return discharges;
}

} // namespace tarnwick
