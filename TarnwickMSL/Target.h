// What the code that the compiler makes may take for granted of the device that will run it.
#pragma once

namespace tarnwick::msl {

struct Target {
    // Sums of floats in buffers are one instruction (VK_EXT_shader_atomic_float); elsewhere they
    // are a loop of compare-exchanges, as they are in threadgroup memory everywhere.
    bool addsFloatsInBuffers = false;

    bool operator==(const Target&) const = default;
};

} // namespace tarnwick::msl
