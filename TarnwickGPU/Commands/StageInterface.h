// Checks and adapts the outputs and inputs of the two functions of a render pipeline. The program's
// text chooses the functions, so they may not fit each other or the target.
#pragma once

#include "TarnwickGPU/Pipeline.h"

#include <optional>
#include <string>

namespace tarnwick::gpu {

struct DeviceRecord;

// The function with the outputs that the pipeline does not have (colours without a target, a second
// source that nothing blends, layers and viewports) changed to private variables.
Function withoutLostOutputs(const Function& function, const RenderPipelineDescriptor& descriptor);

// Whether a fragment function takes the colours so far.
bool takesColors(const msl::EntryPoint& fragment);

// Why the two functions cannot be one pipeline, as a clause; nothing if they can.
std::optional<std::string> interfaceFault(const DeviceRecord& device,
                                          const RenderPipelineDescriptor& descriptor);

} // namespace tarnwick::gpu
