// The kernel that goes before the draws of points on devices whose own points do not suffice.
//
// It runs the vertex function once for each point, and either draws the point itself, adding the
// colours of the few pixels of a small one to sums of whole numbers (which come out the same in any
// order), or notes that the block of points around it is to be drawn by triangles or the device's
// points: those draws are indirect.
#pragma once

#include "TarnwickGPU/Pipeline.h"
#include "TarnwickMSL/EntryPoint.h"
#include "TarnwickSpirv/Module.h"

#include <cstdint>
#include <optional>

namespace tarnwick::gpu {

inline constexpr std::uint32_t pointsABlock = 2048;
inline constexpr std::uint32_t pointsAThreadgroup = 128; // as many as every device takes

// The indirect draws: that of the sums, then points block by block, then quads.
inline constexpr std::uint32_t sumsDraw = 0, firstBlockDraw = 1;

// Where the sums are kept: four 64-bit numbers a pixel.
inline constexpr std::uint32_t bytesOfASum = 32;

struct PointKernelNeeds {
    const msl::EntryPoint* vertex = nullptr;
    const msl::EntryPoint* fragment = nullptr; // null: the kernel only sorts
    ColorAttachmentDescriptor color;           // adds to what is there
    std::uint32_t drawsBinding = 0;            // VkDrawIndirectCommands, whose instances it sets
    std::uint32_t sumsBinding = 0;
};

// Nothing where a function does what a kernel cannot.
std::optional<spirv::Words> pointKernel(const PointKernelNeeds& needs);

// The functions that add the sums, a buffer at binding 0, to the target and clear them. They are in
// PointSumsCode.cpp.
spirv::Words sumsVertex();
spirv::Words sumsFragment();

} // namespace tarnwick::gpu
