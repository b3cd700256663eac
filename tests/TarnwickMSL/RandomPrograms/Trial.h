// Runs random programs on the GPU and compares them with native code.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tarnwick::trials {

// What a program gave for each input, or why it could not run.
struct Outcome {
    std::vector<std::uint32_t> kernel, fragment;
    std::string problem; // empty when it ran
};

// Where programs run.
struct Stages {
    bool kernel = true, fragment = true;
};

using NativeTrial = std::function<std::uint32_t(std::uint64_t seed, std::uint32_t input)>;

// Not for several threads. Blocks while the GPU works.
class Trial {
  public:
    // Null without a device.
    static std::unique_ptr<Trial> make();
    const gpu::DeviceInfo& device() const { return device_->info(); }

    Outcome run(const std::string& source, Stages stages = {});

    // Empty where the GPU agrees with native code on every input in the stages, otherwise what
    // differs, in a sentence.
    std::string difference(std::uint64_t seed, const NativeTrial& native, Stages stages = {});

  private:
    Trial(std::shared_ptr<gpu::Device> device, std::unique_ptr<gpu::CommandQueue> queue);
    std::vector<std::uint32_t> kernelResults(const gpu::Library& library);
    std::vector<std::uint32_t> fragmentResults(const gpu::Library& library);

    std::shared_ptr<gpu::Device> device_;
    std::unique_ptr<gpu::CommandQueue> queue_;
};

} // namespace tarnwick::trials
