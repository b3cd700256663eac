#include "TarnwickRender/Pictures/PictureConversion.h"

#include "TarnwickBase/Precondition.h"
#include "TarnwickPlatform/Movie/ColorWeights.h"
#include "TarnwickRender/Program/HostFunctions.h"

#include <array>

namespace tarnwick {
namespace {

// Integers only, as in convertColors. Each thread writes whole words of each plane; rows have room
// for words that reach over the picture's edge.
constexpr std::string_view source = R"metal(#include <metal_stdlib>
using namespace metal;

struct Conversion {
    int4 luma, blueDifference, redDifference; // weights of blue, green and red, offset
    uint4 offset, stride;                     // of the planes and of their rows, in words of 32 bits
    int2 size;                                // pixels
    int fractionBits;
    int hasAlpha;
};

// Blue, green, red and alpha in 0 to 255, the picture's edge repeated.
static int4 pixel(texture2d<float, access::read> picture, constant Conversion& c, int x, int y) {
    const int2 inside = clamp(int2(x, y), int2(0), c.size - 1);
    return int4(picture.read(uint2(inside)).bgra * 255.0f + 0.5f);
}

static uint value(constant Conversion& c, int4 sum, int4 weights) {
    const int3 parts = sum.xyz * weights.xyz;
    return uint((parts.x + parts.y + parts.z + weights.w) >> c.fractionBits);
}

static device uint* row(device uint* planes, constant Conversion& c, uint plane, int y) {
    return planes + c.offset[plane] + c.stride[plane] * uint(y);
}

// Eight columns and two rows.
kernel void to420(texture2d<float, access::read> picture [[texture(0)]],
                  device uint* planes [[buffer(0)]], constant Conversion& c [[buffer(1)]],
                  uint2 at [[thread_position_in_grid]]) {
    const int x = int(at.x) * 8, y = int(at.y) * 2;
    int4 left = pixel(picture, c, x - 1, y) + pixel(picture, c, x - 1, y + 1);
    uint2 lumaAbove = 0, lumaBelow = 0, alphaAbove = 0, alphaBelow = 0;
    uint blue = 0, red = 0;
    for (int pair = 0; pair < 4; pair++) {
        const int4 above = pixel(picture, c, x + 2 * pair, y);
        const int4 below = pixel(picture, c, x + 2 * pair, y + 1);
        const int4 aboveRight = pixel(picture, c, x + 2 * pair + 1, y);
        const int4 belowRight = pixel(picture, c, x + 2 * pair + 1, y + 1);
        const int word = pair / 2, shift = pair % 2 * 16;
        lumaAbove[word] |= (value(c, above, c.luma) | value(c, aboveRight, c.luma) << 8) << shift;
        lumaBelow[word] |= (value(c, below, c.luma) | value(c, belowRight, c.luma) << 8) << shift;
        alphaAbove[word] |= uint(above.w | aboveRight.w << 8) << shift;
        alphaBelow[word] |= uint(below.w | belowRight.w << 8) << shift;
        const int4 right = aboveRight + belowRight;
        const int4 sum = left + 2 * (above + below) + right;
        blue |= value(c, sum, c.blueDifference) << (8 * pair);
        red |= value(c, sum, c.redDifference) << (8 * pair);
        left = right;
    }
    const bool hasBelow = y + 1 < c.size.y;
    for (int word = 0; word < 2; word++) {
        row(planes, c, 0, y)[at.x * 2 + word] = lumaAbove[word];
        if (hasBelow)
            row(planes, c, 0, y + 1)[at.x * 2 + word] = lumaBelow[word];
        if (c.hasAlpha != 0) {
            row(planes, c, 3, y)[at.x * 2 + word] = alphaAbove[word];
            if (hasBelow)
                row(planes, c, 3, y + 1)[at.x * 2 + word] = alphaBelow[word];
        }
    }
    row(planes, c, 1, int(at.y))[at.x] = blue;
    row(planes, c, 2, int(at.y))[at.x] = red;
}

// Four columns of one row, which is added to itself so that the sums are those of to420.
kernel void to422(texture2d<float, access::read> picture [[texture(0)]],
                  device uint* planes [[buffer(0)]], constant Conversion& c [[buffer(1)]],
                  uint2 at [[thread_position_in_grid]]) {
    const int x = int(at.x) * 4, y = int(at.y);
    int4 left = pixel(picture, c, x - 1, y);
    uint blue = 0, red = 0;
    for (int pair = 0; pair < 2; pair++) {
        const int4 middle = pixel(picture, c, x + 2 * pair, y);
        const int4 right = pixel(picture, c, x + 2 * pair + 1, y);
        const int4 sum = 2 * (left + 2 * middle + right);
        row(planes, c, 0, y)[at.x * 2 + pair] =
            value(c, middle, c.luma) | value(c, right, c.luma) << 16;
        blue |= value(c, sum, c.blueDifference) << (16 * pair);
        red |= value(c, sum, c.redDifference) << (16 * pair);
        left = right;
    }
    row(planes, c, 1, y)[at.x] = blue;
    row(planes, c, 2, y)[at.x] = red;
}

// Two columns of one row.
kernel void to444(texture2d<float, access::read> picture [[texture(0)]],
                  device uint* planes [[buffer(0)]], constant Conversion& c [[buffer(1)]],
                  uint2 at [[thread_position_in_grid]]) {
    const int x = int(at.x) * 2, y = int(at.y);
    const int4 left = pixel(picture, c, x, y), right = pixel(picture, c, x + 1, y);
    row(planes, c, 0, y)[at.x] = value(c, left, c.luma) | value(c, right, c.luma) << 16;
    row(planes, c, 1, y)[at.x] =
        value(c, left, c.blueDifference) | value(c, right, c.blueDifference) << 16;
    row(planes, c, 2, y)[at.x] =
        value(c, left, c.redDifference) | value(c, right, c.redDifference) << 16;
    const uint leftAlpha = uint(left.w << 2 | left.w >> 6);
    const uint rightAlpha = uint(right.w << 2 | right.w >> 6);
    row(planes, c, 3, y)[at.x] = leftAlpha | rightAlpha << 16;
}
)metal";

struct alignas(16) Conversion {
    ColorWeights luma, blueDifference, redDifference;
    std::array<std::uint32_t, 4> offset{}, stride{};
    std::array<std::int32_t, 2> size{};
    std::int32_t fractionBits = ColorWeights::fractionBits;
    std::int32_t hasAlpha = 0;
};
static_assert(sizeof(Conversion) == 96);

// The kernel of a format.
struct Way {
    const char* kernel;
    std::int64_t columns, rows; // of a thread
    int bits;
    int samples; // of which a chroma value is the sum
};

Way wayTo(PixelFormat format) {
    switch (format) {
    case PixelFormat::ycbcr420:
    case PixelFormat::ycbcra420:
        return {"to420", 8, 2, 8, 8};
    case PixelFormat::ycbcr422x10:
        return {"to422", 4, 1, 10, 8};
    case PixelFormat::ycbcra444x10:
        return {"to444", 2, 1, 10, 1};
    case PixelFormat::bgra:
        break;
    }
    precondition(false, "a picture is converted to Y'CbCr", "format", static_cast<int>(format));
    return {};
}

std::uint32_t words(std::int64_t bytes) {
    return static_cast<std::uint32_t>(bytes / 4);
}

Conversion conversion(PixelFormat format, const gpu::Texture& picture, const PixelLayout& layout) {
    const Way way = wayTo(format);
    Conversion made{.luma = lumaWeights(way.bits),
                    .blueDifference = blueDifference(way.bits, way.samples),
                    .redDifference = redDifference(way.bits, way.samples),
                    .size = {static_cast<std::int32_t>(picture.width()),
                             static_cast<std::int32_t>(picture.height())},
                    .hasAlpha = format == PixelFormat::ycbcra420 ? 1 : 0};
    for (std::size_t plane = 0; plane < layout.planes.size(); ++plane) {
        made.offset[plane] = words(layout.planes[plane].offset);
        made.stride[plane] = words(layout.planes[plane].bytesPerRow);
    }
    return made;
}

std::uint32_t threads(std::int64_t pixels, std::int64_t each) {
    return static_cast<std::uint32_t>((pixels + each - 1) / each);
}

} // namespace

PictureConversion::PictureConversion(gpu::Device& device, PixelFormat format)
    : format_(format),
      kernel_(hostKernel(device, *device.newLibrary(source), wayTo(format).kernel)) {}

bool PictureConversion::encode(gpu::CommandBuffer& commands, const gpu::Texture& picture,
                               const gpu::Buffer& planes) const {
    const PixelLayout layout = pixelLayout(format_, picture.width(), picture.height());
    precondition(planes.length() >= static_cast<std::size_t>(layout.bytes),
                 "a converted picture fits into its buffer", "bytes", layout.bytes, "room",
                 planes.length());
    auto encoder = commands.computeCommandEncoder();
    if (!encoder)
        return false;
    const Conversion values = conversion(format_, picture, layout);
    const Way way = wayTo(format_);
    encoder->setComputePipelineState(*kernel_);
    encoder->setTexture(&picture, 0);
    encoder->setBuffer(planes, 0, 0);
    encoder->setBytes(&values, sizeof values, 1);
    encoder->dispatchThreads({.width = threads(picture.width(), way.columns),
                              .height = threads(picture.height(), way.rows)},
                             {.width = 32, .height = 4});
    encoder->endEncoding();
    return true;
}

} // namespace tarnwick
