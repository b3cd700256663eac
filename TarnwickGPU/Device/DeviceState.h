// The Vulkan side of a Device: its record, and the owners of everything that its objects share.
// Shared by every object that the device made.
#pragma once

#include "TarnwickGPU/Resources/PointSums.h"
#include "TarnwickGPU/Resources/Residents.h"
#include "TarnwickGPU/Resources/Samplers.h"
#include "TarnwickGPU/Resources/StandIns.h"
#include "TarnwickGPU/Resources/Transfers.h"
#include "TarnwickGPU/Vulkan/DeviceRecord.h"
#include "TarnwickGPU/Vulkan/Graveyard.h"
#include "TarnwickGPU/Vulkan/Instance.h"
#include "TarnwickGPU/Vulkan/PipelineCache.h"
#include "TarnwickGPU/Vulkan/Submissions.h"

#include <memory>

namespace tarnwick::gpu {

struct PhysicalDevice;

struct DeviceState {
    // Null when the device cannot be opened.
    static std::shared_ptr<DeviceState> make(std::shared_ptr<Instance> instance,
                                             const PhysicalDevice& chosen);

    DeviceState() = default;
    ~DeviceState(); // the only destructor that waits until the GPU is idle, but for a layer's
    DeviceState(const DeviceState&) = delete;
    DeviceState& operator=(const DeviceState&) = delete;

    std::shared_ptr<Instance> instance;
    DeviceRecord record;

    // Each keeps references to those before it.
    Submissions submissions;
    Graveyard graveyard{record, submissions};
    Transfers transfers{record, submissions, graveyard};
    Samplers samplers{record};
    StandIns standIns{record, graveyard, transfers};
    PipelineCache pipelineCache{record};
    PointSumsKeeper pointSums{record, graveyard};
    Residents residents;
};

} // namespace tarnwick::gpu
