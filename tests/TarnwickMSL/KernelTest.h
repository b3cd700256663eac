// Runs one kernel on buffers of bytes, for tests of what kernels do with memory.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace tarnwick::tests {

using Bytes = std::vector<unsigned char>;

struct KernelRun {
    std::string source; // the header is put before it; the kernel's name is `check`
    gpu::Size grid, threadgroup;
    std::vector<std::size_t> lengths; // of [[threadgroup(0)]], (1)..., where set
};

// Skips the test aloud where there is no device.
class KernelTest : public testing::Test {
  protected:
    void SetUp() override;

    std::unique_ptr<gpu::ComputePipelineState> pipeline(const std::string& source);
    // Binds the buffers at 0, 1...; gives what they hold afterwards.
    std::vector<Bytes> run(const KernelRun& kernel, const std::vector<Bytes>& buffers);

    std::shared_ptr<gpu::Device> device;
    std::unique_ptr<gpu::CommandQueue> queue;
};

} // namespace tarnwick::tests
