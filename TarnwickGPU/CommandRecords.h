// The records of command buffers and encoders: render passes, viewports, sizes of grids.
#pragma once

#include "TarnwickGPU/Format.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace tarnwick::gpu {

class Texture;

enum class LoadAction : std::uint8_t { dontCare, load, clear };
enum class StoreAction : std::uint8_t { dontCare, store, multisampleResolve };

struct ClearColor { // the stored values, in the range of the target's format
    double red = 0, green = 0, blue = 0, alpha = 1; // opaque black, as in Metal
};

struct ColorAttachment {
    const Texture* texture = nullptr;        // null: no colour
    std::uint32_t level = 0, slice = 0;      // of `texture`
    const Texture* resolveTexture = nullptr; // for multisampleResolve: of one sample
    LoadAction load = LoadAction::dontCare;
    StoreAction store = StoreAction::store;
    ClearColor clear;
};

struct DepthAttachment {
    const Texture* texture = nullptr;
    std::uint32_t level = 0, slice = 0;
    LoadAction load = LoadAction::clear;
    StoreAction store = StoreAction::dontCare;
    double clearDepth = 1.0; // [0, 1]
};

struct RenderPassDescriptor {
    ColorAttachment color;                                   // colour attachment 0
    std::array<ColorAttachment, mostColors - 1> otherColors; // colour attachments 1 to 7
    DepthAttachment depth;                                   // no texture: no depth

    const ColorAttachment& colorAt(std::size_t n) const { // n in [0, mostColors)
        return n == 0 ? color : otherColors[n - 1];
    }
};

// A kernel's [[threadgroup(n)]] arguments have n in [0, 30].
inline constexpr std::size_t mostThreadgroupPointers = 31;

enum class PrimitiveType : std::uint8_t { point, triangle, triangleStrip };
enum class CommandBufferStatus : std::uint8_t { recording, committed, completed, error };

struct Size { // threads or threadgroups
    std::uint32_t width = 1, height = 1, depth = 1;

    bool operator==(const Size&) const = default;
};

// The part of the target that clip space covers: pixels from its upper left; znear, zfar in [0, 1].
struct Viewport {
    double originX = 0, originY = 0, width = 0, height = 0, znear = 0, zfar = 1;
};

// Pixels from the target's upper left, within the target. Nothing is drawn outside.
struct ScissorRect {
    std::uint32_t x = 0, y = 0, width = 0, height = 0;
};

} // namespace tarnwick::gpu
