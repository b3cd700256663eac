// What the functions of a render pipeline give to each other and to its target. Which of them go
// together is up to the program's text, so nothing of it is taken for granted.
#pragma once

#include "TarnwickGPU/Pipeline.h"

#include <optional>
#include <string>

namespace tarnwick::gpu {

struct DeviceRecord;

// The function without outputs that no pipeline of the layer has a place for: colours other than
// color(0), and layers and viewports other than the target's one. Nobody sees what it gives there.
Function withoutLostOutputs(const Function& function);

// Why the two functions do not make a pipeline, as a clause; nothing where they do.
std::optional<std::string> interfaceFault(const DeviceRecord& device,
                                          const RenderPipelineDescriptor& descriptor);

} // namespace tarnwick::gpu
