// Runs random programs on the GPU and compares them with native code.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickMSL/Target.h"
#include "tests/TarnwickMSL/RandomPrograms/Metal.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick::trials {

// What a program gave for each input, or why it could not run.
struct Outcome {
    std::vector<std::uint32_t> kernel, fragment;
    std::uint32_t simdWidth = 0; // of a program of the form Form::group
    std::string problem;         // empty when it ran
};

// Fills the trialInputs numbers of a program, which Native.h counts from 0.
using NativeTrial =
    std::function<void(std::uint64_t program, std::uint32_t simdWidth, std::uint32_t* results)>;

// Not for several threads. Blocks while the GPU works.
class Trial {
  public:
    // Null without a device. Programs are compiled for the target, by default the device's own.
    static std::unique_ptr<Trial> make(std::optional<msl::Target> target = {});
    const gpu::DeviceInfo& device() const { return device_->info(); }
    const msl::Target& target() const { return target_; }

    // Runs a program's text; see Metal.h.
    Outcome run(const std::string& body, Stages stages = {});

    // Empty where the GPU agrees with native code on every input in the stages, otherwise what
    // differs, in a sentence.
    std::string difference(const std::string& body, std::uint64_t program,
                           const NativeTrial& native, Stages stages = {});

  private:
    Trial(std::shared_ptr<gpu::Device> device, std::unique_ptr<gpu::CommandQueue> queue,
          const msl::Target& target);
    bool makeWorld();
    void kernelResults(const gpu::Library& library, Form form, Outcome& outcome);
    void fragmentResults(const gpu::Library& library, Form form, Outcome& outcome);

    std::shared_ptr<gpu::Device> device_;
    std::unique_ptr<gpu::CommandQueue> queue_;
    msl::Target target_;
    // The world of programs of that form; memory is the counters of others.
    std::unique_ptr<gpu::Buffer> memory_, words_;
    std::vector<std::unique_ptr<gpu::Texture>> textures_;
};

} // namespace tarnwick::trials
