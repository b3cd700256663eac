// Checks and adapts the outputs and inputs of the two functions of a render pipeline. The program's
// text chooses the functions, so they may not fit each other or the target.
#pragma once

#include "TarnwickGPU/Pipeline.h"

#include <optional>
#include <string>

namespace tarnwick::gpu {

struct DeviceRecord;

// The function with the outputs that no pipeline of the layer has (colours other than color(0),
// layers and viewports) changed to private variables.
Function withoutLostOutputs(const Function& function);

// Why the two functions cannot be one pipeline, as a clause; nothing if they can.
std::optional<std::string> interfaceFault(const DeviceRecord& device,
                                          const RenderPipelineDescriptor& descriptor);

} // namespace tarnwick::gpu
