#include "TarnwickPlatform/Movie/ColorConversion.h"
#include "TarnwickRender/PictureConversion.h"
#include "TarnwickRender/VideoExporter.h"
#include "tests/TarnwickRender/Rendering.h"

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <sstream>
#include <unistd.h>

namespace tarnwick::tests {
namespace {

constexpr std::int64_t width = 46, height = 22; // no multiples of a thread's columns and words

std::shared_ptr<PixelBuffer> emptyBuffer(PixelFormat format) {
    return PixelBufferPool(format, width, height, 1).take();
}

// Noise, with the strongest colours that there are in its first rows.
std::shared_ptr<PixelBuffer> pixels() {
    auto made = emptyBuffer(PixelFormat::bgra);
    std::minstd_rand random(3);
    for (std::int64_t y = 0; y < height; ++y)
        for (std::int64_t byte = 0; byte < 4 * width; ++byte) {
            const auto value = static_cast<unsigned>(random() >> 8 & 255);
            made->plane(0)[y * made->layout().planes[0].bytesPerRow + byte] =
                static_cast<std::byte>(y < 6 ? value / 128 * 255 : value);
        }
    return made;
}

// Red, green, blue (and alpha) of [0, 1], the edge repeated.
std::array<double, 4> colorAt(const PixelBuffer& pixels, std::int64_t x, std::int64_t y) {
    const std::byte* pixel =
        pixels.plane(0) +
        std::clamp<std::int64_t>(y, 0, height - 1) * pixels.layout().planes[0].bytesPerRow +
        4 * std::clamp<std::int64_t>(x, 0, width - 1);
    const auto part = [&](int index) { return static_cast<double>(pixel[index]) / 255; };
    return {part(2), part(1), part(0), part(3)};
}

// Rec. ITU-R BT.709-6, item 3, of one colour: Y', Cb, Cr and alpha as code values, not rounded.
double codeValue(const std::array<double, 4>& color, std::size_t plane, int bits) {
    const double luma = 0.2126 * color[0] + 0.7152 * color[1] + 0.0722 * color[2];
    const double steps = std::exp2(bits - 8);
    if (plane == 0)
        return steps * (16 + 219 * luma);
    if (plane == 3)
        return color[3] * (std::exp2(bits) - 1);
    const double difference = plane == 1 ? (color[2] - luma) / 1.8556 : (color[0] - luma) / 1.5748;
    return steps * (128 + 224 * difference);
}

// A plane's sample in double precision: chroma of half the width sited on the left column, of half
// the height between the rows.
double exactSample(const PixelBuffer& pixels, const PlaneShape& shape, std::size_t plane,
                   std::int64_t column, std::int64_t row) {
    double sum = 0, weights = 0;
    for (std::int64_t down = 0; down < shape.down; ++down)
        for (std::int64_t across = 1 - shape.across; across < shape.across; ++across) {
            const double weight = across == 0 ? 2 : 1;
            const auto color =
                colorAt(pixels, column * shape.across + across, row * shape.down + down);
            sum += weight * codeValue(color, plane, shape.bytesPerSample == 1 ? 8 : 10);
            weights += weight;
        }
    return sum / weights;
}

int sampleAt(const PixelBuffer& buffer, const PlaneShape& shape, std::size_t plane,
             std::int64_t column, std::int64_t row) {
    const std::byte* at = buffer.plane(plane) + row * buffer.layout().planes[plane].bytesPerRow +
                          column * shape.bytesPerSample;
    const int low = static_cast<int>(at[0]);
    return shape.bytesPerSample == 1 ? low : low | static_cast<int>(at[1]) << 8;
}

using Sample = std::function<double(const PlaneShape&, std::size_t plane, std::int64_t column,
                                    std::int64_t row)>;

// The farthest from `wanted` that a sample of `converted` lies, in code values.
double farthest(const PixelBuffer& converted, const Sample& wanted) {
    double most = 0;
    const auto shapes = planeShapes(converted.format());
    for (std::size_t plane = 0; plane < shapes.size(); ++plane)
        for (std::int64_t row = 0; row < converted.layout().planes[plane].height; ++row)
            for (std::int64_t column = 0; column < converted.layout().planes[plane].width;
                 ++column) {
                const double want = wanted(shapes[plane], plane, column, row);
                const int got = sampleAt(converted, shapes[plane], plane, column, row);
                most = std::max(most, std::abs(got - want));
            }
    return most;
}

class PictureConversions : public Rendering {
  protected:
    std::shared_ptr<PixelBuffer> byGPU(const PixelBuffer& pixels, PixelFormat format) {
        const auto texture = device->newTexture({.width = static_cast<std::uint32_t>(width),
                                                 .height = static_cast<std::uint32_t>(height)});
        texture->replace({.width = texture->width(), .height = texture->height()}, 0,
                         pixels.plane(0),
                         static_cast<std::size_t>(pixels.layout().planes[0].bytesPerRow));
        auto converted = emptyBuffer(format);
        const auto bytes = static_cast<std::size_t>(converted->layout().bytes);
        const auto buffer = device->newBuffer(bytes);
        const PictureConversion conversion(*device, format);
        perform([&](gpu::CommandBuffer& commands) {
            EXPECT_TRUE(conversion.encode(commands, *texture, *buffer));
        });
        std::memcpy(converted->plane(0), buffer->contents(), bytes);
        return converted;
    }
};

// Rounding to the nearest is off by half a code value; the rest is the weights' precision. A 10-bit
// alpha repeats its upper bits, which is exact for 8 bits within 0.76.
TEST_F(PictureConversions, areExactInEveryFormatAndTheSameOnProcessorAndGPU) {
    const auto source = pixels();
    for (const PixelFormat format : {PixelFormat::ycbcr420, PixelFormat::ycbcr422x10,
                                     PixelFormat::ycbcra444x10, PixelFormat::ycbcra420}) {
        SCOPED_TRACE(static_cast<int>(format));
        const double bar = format == PixelFormat::ycbcra444x10 ? 0.77 : 0.52;
        const auto byProcessor = emptyBuffer(format);
        convertColors(*source, *byProcessor);
        EXPECT_LT(farthest(*byProcessor, std::bind_front(exactSample, std::cref(*source))), bar);
        EXPECT_EQ(
            farthest(*byGPU(*source, format), std::bind_front(sampleAt, std::cref(*byProcessor))),
            0);
    }
}

// The film's bytes, written and taken away again.
std::string filmOf(const std::shared_ptr<const ShaderProgram>& program, gpu::Device& device,
                   VideoCodec codec, ColorConversionPlace place) {
    const auto file = std::filesystem::path(testing::TempDir()) /
                      ("converted-" + std::to_string(getpid()) + ".mov");
    const ExportPreset preset{"small", "Small", 64, 36, 10, 300'000, codec};
    VideoExporter::export_(program, device, ExportPlan(preset, 1, 0.5), {}, true, file,
                           [](std::int64_t, std::int64_t) { return true; },
                           {.colorConversion = place});
    std::ostringstream bytes;
    bytes << std::ifstream(file, std::ios::binary).rdbuf();
    std::filesystem::remove(file);
    return bytes.str();
}

TEST_F(PictureConversions, makeTheSameFilmsOnTheGPUAndByTheWriter) {
    const auto colors = program("float4 shade(float2 uv, " + std::string(arguments) +
                                ") { return float4(uv, sin(u.time), 1.0) * uv.x; }\n");
    for (const VideoCodec codec : {VideoCodec::prores4444, VideoCodec::hevcAlpha})
        EXPECT_TRUE(filmOf(colors, *device, codec, ColorConversionPlace::gpu) ==
                    filmOf(colors, *device, codec, ColorConversionPlace::writer));
}

} // namespace
} // namespace tarnwick::tests
