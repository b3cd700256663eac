// The formats of pictures on their way into a movie: one row for each.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace tarnwick {

// How a picture is stored in memory. Components of 10 bits are 16-bit words in the machine's byte
// order, the value in the low bits. The planes' order is Y', Cb, Cr, alpha. Alpha is in full range;
// 10-bit alpha is 8-bit alpha with its two highest bits repeated below.
enum class PixelFormat : std::uint8_t {
    bgra,         // one plane, 4 bytes a pixel: blue, green, red, alpha, each in full range
    ycbcr420,     // 8 bits; chroma of half the width and height
    ycbcr422x10,  // 10 bits; chroma of half the width
    ycbcra444x10, // 10 bits; all planes of full size
    ycbcra420,    // 8 bits; chroma of half the width and height; alpha of full size
};

// One plane of a format: the size of its samples, and how many pixels share one.
struct PlaneShape {
    std::int64_t bytesPerSample = 1; // in bgra: of the whole pixel
    std::int64_t across = 1;         // pixels of the picture per sample, horizontally
    std::int64_t down = 1;           // vertically
};

struct PixelFormatRow {
    PixelFormat format;
    const char* libavName; // pixel format of libavutil, without the byte order
    std::size_t planeCount;
    std::array<PlaneShape, 4> planes; // planeCount of them
};

// clang-format off
inline constexpr std::array pixelFormatRows{
    PixelFormatRow{PixelFormat::bgra,         "bgra",      1, {{{4, 1, 1}}}},
    PixelFormatRow{PixelFormat::ycbcr420,     "yuv420p",   3, {{{1, 1, 1}, {1, 2, 2}, {1, 2, 2}}}},
    PixelFormatRow{PixelFormat::ycbcr422x10,  "yuv422p10", 3, {{{2, 1, 1}, {2, 2, 1}, {2, 2, 1}}}},
    PixelFormatRow{PixelFormat::ycbcra444x10, "yuva444p10", 4,
                   {{{2, 1, 1}, {2, 1, 1}, {2, 1, 1}, {2, 1, 1}}}},
    PixelFormatRow{PixelFormat::ycbcra420,    "yuva420p",  4,
                   {{{1, 1, 1}, {1, 2, 2}, {1, 2, 2}, {1, 1, 1}}}},
};
// clang-format on
static_assert(pixelFormatRows.size() == static_cast<std::size_t>(PixelFormat::ycbcra420) + 1);
static_assert([] {
    for (std::size_t index = 0; index < pixelFormatRows.size(); ++index)
        if (pixelFormatRows[index].format != static_cast<PixelFormat>(index))
            return false;
    return true;
}());

constexpr const PixelFormatRow& pixelFormatRow(PixelFormat format) {
    return pixelFormatRows[static_cast<std::size_t>(format)];
}

constexpr std::span<const PlaneShape> planeShapes(PixelFormat format) {
    const PixelFormatRow& row = pixelFormatRow(format);
    return {row.planes.data(), row.planeCount};
}

} // namespace tarnwick
