// The kernel that runs before the draws of points on devices whose own points are not enough.
//
// It runs the vertex function once for each point. It adds the colours of a small point to sums of
// integers, which are the same in any order. For a larger point it enables the indirect draw of the
// point's block, as the device's points or as triangles.
#pragma once

#include "TarnwickGPU/Pipeline.h"
#include "TarnwickGPU/Points/SumNumbers.h"
#include "TarnwickMSL/EntryPoint.h"
#include "TarnwickSpirv/Module.h"

#include <cstdint>
#include <optional>

namespace tarnwick::gpu {

inline constexpr std::uint32_t pointsABlock = 2048;      // points of one indirect draw
inline constexpr std::uint32_t pointsAThreadgroup = 128; // as many as every device takes

// The order of the indirect draws: the sums, then each block as points, then each block as quads.
inline constexpr std::uint32_t sumsDraw = 0, firstBlockDraw = 1;

// Four 64-bit numbers per pixel.
inline constexpr std::uint32_t bytesOfASum = 32;

struct PointKernelNeeds {
    const msl::EntryPoint* vertex = nullptr;
    const msl::EntryPoint* fragment = nullptr; // null: the kernel only sorts
    ColorAttachmentDescriptor
        color; // of a target that adds, by factors of 0, 1 or the source's alpha
    std::uint32_t drawsBinding = 0; // VkDrawIndirectCommands; the kernel sets their instanceCount
    std::uint32_t sumsBinding = 0;
    SumForm sumForm = SumForm::integers;
};

// SPIR-V. Nothing if a function has instructions that kernels do not support.
std::optional<spirv::Words> pointKernel(const PointKernelNeeds& needs);

// The functions that add the sums, a buffer at binding 0, to the target and clear them. They are in
// PointSumsCode.cpp.
spirv::Words sumsVertex();
spirv::Words sumsFragment(SumForm form);

} // namespace tarnwick::gpu
