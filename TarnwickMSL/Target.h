// What code is made for: features of the device that it may require, and whether it is optimised.
#pragma once

#include <cstdint>

namespace tarnwick::msl {

// The language of the code that is made.
enum class Language : std::uint8_t {
    spirv, // SPIR-V 1.6 for Vulkan 1.3
    wgsl   // text in the WebGPU Shading Language
};

struct Target {
    Language language = Language::spirv;

    // Sums of floats in buffers are one instruction (VK_EXT_shader_atomic_float); otherwise a loop
    // of compare-exchanges, as in threadgroup memory on all devices.
    bool addsFloatsInBuffers = false;
    // Fragment functions with raster order groups run one after the other for each pixel, in the
    // order of the primitives (fragmentShaderPixelInterlock of VK_EXT_fragment_shader_interlock);
    // otherwise only as the device orders them by itself.
    bool ordersFragments = false;
    // os_log is NonSemantic.DebugPrintf (VK_KHR_shader_non_semantic_info), which the validation
    // layer prints; otherwise logs are dropped.
    bool keepsLogs = false;

    // The program may read pointers from buffers and make them of integers. Nothing bounds their
    // accesses, so this is for programs that are trusted as the host itself is.
    bool followsAddresses = true;

    // There are pipelines of object and mesh functions (VK_EXT_mesh_shader); otherwise a program
    // with such functions is refused.
    bool hasMeshFunctions = true;

    // The driver may compile a program anew for each draw, with the values of its uniform buffers
    // as constants, as Mesa's CPU driver does. So conditions on these values alone are hidden from
    // it. On other devices this only makes such branches a little slower.
    bool specialisesUniforms = true;

    // Modules may have these types, in registers and in memory of all kinds (shaderFloat16,
    // shaderInt8, shaderInt16 and shaderInt64 of Vulkan 1.3, and the storage features of 8 and 16
    // bits). Otherwise words of 32 bits and floats stand for them (Passes/Widths); buffers must then
    // end at a multiple of 4 bytes. Atomic operations and addresses of 64 bits are refused without
    // hasInt64.
    bool hasFloat16 = true, hasInt8 = true, hasInt16 = true, hasInt64 = true;

    // The steps that only make code faster are run (Passes.h).
    bool isOptimised = true;

    bool operator==(const Target&) const = default;
};

// The target of WebGPU without optional types. Integers of 8, 16 and 64 bits and halves are computed
// in words and floats; WGSL has no pointers in buffers, no mesh functions and no logs.
constexpr Target wgslTarget() {
    return {.language = Language::wgsl,
            .followsAddresses = false,
            .hasMeshFunctions = false,
            .specialisesUniforms = false,
            .hasFloat16 = false,
            .hasInt8 = false,
            .hasInt16 = false,
            .hasInt64 = false};
}

} // namespace tarnwick::msl
