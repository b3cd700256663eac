// Runs one kernel on buffers of bytes, for tests of what kernels do with memory and textures.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace tarnwick::tests {

using Bytes = std::vector<unsigned char>;
using Texel = std::array<float, 4>;

struct KernelRun {
    std::string kernel = "check";
    gpu::Size grid{1, 1, 1}, threadgroup{1, 1, 1};
    std::vector<std::size_t> lengths = {};      // of [[threadgroup(0)]], (1)..., where set
    const gpu::Texture* texture = nullptr;      // [[texture(0)]]
    const gpu::SamplerState* sampler = nullptr; // [[sampler(0)]]
};

// Skips the test aloud where there is no device.
class KernelTest : public testing::Test {
  protected:
    void SetUp() override;

    // Of a program; the header is put before it.
    std::unique_ptr<gpu::Library> compiled(const std::string& program);
    // Of the program's kernel `check`.
    std::unique_ptr<gpu::ComputePipelineState> pipeline(const std::string& program);

    // Binds the buffers at 0, 1...; gives their bytes after the run.
    std::vector<Bytes> run(const gpu::Library& library, const KernelRun& run,
                           const std::vector<Bytes>& buffers);

    // The float4 that a kernel stores at [[buffer(0)]] for each of the 16-byte inputs at
    // [[buffer(1)]], a thread for each.
    template <class Input>
    std::vector<Texel> texels(const gpu::Library& library, const std::string& kernel,
                              const std::vector<Input>& inputs, const gpu::Texture* texture,
                              const gpu::SamplerState* sampler = nullptr) {
        static_assert(sizeof(Input) == sizeof(Texel));
        const auto count = static_cast<std::uint32_t>(inputs.size());
        Bytes given(inputs.size() * sizeof(Input));
        std::memcpy(given.data(), inputs.data(), given.size());
        const auto after = run(library,
                               {.kernel = kernel,
                                .grid = {count, 1, 1},
                                .threadgroup = {64, 1, 1},
                                .texture = texture,
                                .sampler = sampler},
                               {Bytes(given.size()), given});
        std::vector<Texel> results(inputs.size());
        std::memcpy(results.data(), after[0].data(), after[0].size());
        return results;
    }

    std::shared_ptr<gpu::Device> device;
    std::unique_ptr<gpu::CommandQueue> queue;
};

} // namespace tarnwick::tests
