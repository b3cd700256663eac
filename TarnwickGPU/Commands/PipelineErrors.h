// The sentences of DeviceError about pipelines that a device refuses.
#pragma once

#include "TarnwickMSL/EntryPoint.h"

#include <vulkan/vulkan.h>

#include <string>

namespace tarnwick::gpu {

struct DeviceRecord;

// `subject` names the pipeline, as in "the compute pipeline of blur".
std::string refusal(const DeviceRecord& device, const std::string& subject, VkResult result);

// Throws DeviceError if the function needs a value of a function constant, a capability that the
// device lacks, or lacks in functions of its stage, or more threadgroup memory than the device has.
void checkNeeds(const DeviceRecord& device, const std::string& subject,
                const msl::EntryPoint& function);

} // namespace tarnwick::gpu
