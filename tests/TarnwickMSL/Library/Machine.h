// A device that runs the cases' kernels.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"
#include "tests/TarnwickMSL/Library/Cases.h"

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace tarnwick::trials {

class Machine {
  public:
    // Null without a device.
    static std::unique_ptr<Machine> make();
    const std::string& name() const { return device_->info().name; }

    // Compiles a program. Throws gpu::LibraryError with the compiler's text.
    std::unique_ptr<gpu::Library> compile(const std::string& text);

    // A kernel of the library, ready to run. Throws std::runtime_error if the library lacks it.
    std::unique_ptr<gpu::ComputePipelineState> pipeline(const gpu::Library& library,
                                                        const std::string& kernel);

    // Runs `threads` threads of a kernel whose first buffers hold `columns` and whose next one
    // takes `words` words. Throws std::runtime_error with one sentence.
    std::vector<std::uint32_t> run(const gpu::ComputePipelineState& pipeline,
                                   const Columns& columns, std::size_t threads, std::size_t words);
    std::vector<std::uint32_t> run(const gpu::Library& library, const std::string& kernel,
                                   const Columns& columns, std::size_t threads, std::size_t words);

    // The verdict on each case, over its scalar form and at least one vector form.
    void judgeAll(const std::vector<Case>& cases, std::size_t count, std::span<const int> widths,
                  const std::function<void(const Case&, const Verdict&)>& report);

  private:
    Machine(std::shared_ptr<gpu::Device> device, std::unique_ptr<gpu::CommandQueue> queue);

    std::shared_ptr<gpu::Device> device_;
    std::unique_ptr<gpu::CommandQueue> queue_;
};

} // namespace tarnwick::trials
