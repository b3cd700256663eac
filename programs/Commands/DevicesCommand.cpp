// tarnwick devices: the GPUs to draw with.
#include "TarnwickGPU/Device.h"
#include "programs/Commands/Command.h"

namespace tarnwick {

static Status devices(const Arguments&) {
    const std::vector<gpu::DeviceInfo> all = gpu::allDevices();
    if (all.empty())
        failure(gpu::Device::absence());
    const auto chosen = gpu::Device::systemDefault();
    bool isMarked = false; // of two equal devices the first is the chosen one
    for (std::size_t index = 0; index < all.size(); ++index) {
        const bool isChosen = !isMarked && chosen && all[index] == chosen->info();
        isMarked = isMarked || isChosen;
        print(std::to_string(index) + (isChosen ? " * " : "   ") + all[index].name + " (" +
              all[index].driver + ")" + (all[index].isCPU ? ", on the CPU" : "") + "\n");
    }
    if (!chosen)
        failure(gpu::Device::absence());
    return Status::done;
}

const Command devicesCommand{
    .name = "devices",
    .operands = "",
    .summary = "Lists the devices; * marks the device in use, which TARNWICK_DEVICE can name.",
    .options = {},
    .run = devices};

} // namespace tarnwick
