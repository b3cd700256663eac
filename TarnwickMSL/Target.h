// Features of the device that the compiler's code may require.
#pragma once

namespace tarnwick::msl {

struct Target {
    // Sums of floats in buffers are one instruction (VK_EXT_shader_atomic_float); otherwise a loop
    // of compare-exchanges, as in threadgroup memory on all devices.
    bool addsFloatsInBuffers = false;

    bool operator==(const Target&) const = default;
};

} // namespace tarnwick::msl
