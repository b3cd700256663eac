#include "programs/Doctor/ProgramReport.h"

#include "TarnwickBase/Version.h"
#include "TarnwickGPU/Device.h"
#include "programs/Doctor/CompilerProgram.h"

#include <tarnwick-commit.h> // made by the build

namespace tarnwick {

std::string programReport() {
    std::string text = programName() + "\n";
    if (*TARNWICK_COMMIT != '\0')
        text += "Commit: " TARNWICK_COMMIT "\n";
    text += "Compiler: " + compilerRelease().value_or("missing") + "\n";
    const auto devices = gpu::allDevices();
    if (devices.empty())
        text += "Device: none\n";
    for (const gpu::DeviceInfo& device : devices)
        text += "Device: " + device.name + ", " + device.driver + "\n";
    return text;
}

} // namespace tarnwick
