#include "TarnwickPlatform/Movie/ColorConversion.h"
#include "TarnwickRender/Pictures/PictureConversion.h"
#include "TarnwickRender/VideoExporter.h"
#include "tests/TarnwickRender/Rendering.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <unistd.h>
#include <vector>

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

// The samples of all planes, without what lies behind the rows.
std::vector<std::byte> samples(const PixelBuffer& buffer) {
    std::vector<std::byte> found;
    const auto shapes = planeShapes(buffer.format());
    for (std::size_t plane = 0; plane < shapes.size(); ++plane) {
        const PixelLayout::Plane& layout = buffer.layout().planes[plane];
        for (std::int64_t y = 0; y < layout.height; ++y) {
            const std::byte* row = buffer.plane(plane) + y * layout.bytesPerRow;
            found.insert(found.end(), row, row + layout.width * shapes[plane].bytesPerSample);
        }
    }
    return found;
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

// The processor's are compared with double precision in tests/TarnwickPlatform.
TEST_F(PictureConversions, giveTheBytesThatTheProcessorGives) {
    const auto source = pixels();
    for (const PixelFormat format : {PixelFormat::ycbcr420, PixelFormat::ycbcr422x10,
                                     PixelFormat::ycbcra444x10, PixelFormat::ycbcra420}) {
        const auto byProcessor = emptyBuffer(format);
        convertColors(*source, *byProcessor);
        EXPECT_EQ(samples(*byGPU(*source, format)), samples(*byProcessor))
            << static_cast<int>(format);
    }
}

// The movie's bytes, written and taken away again.
std::string movieOf(const std::shared_ptr<const ShaderProgram>& program, gpu::Device& device,
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

TEST_F(PictureConversions, makeTheSameMoviesOnTheGPUAndByTheWriter) {
    const auto colors = program("float4 shade(float2 uv, " + std::string(arguments) +
                                ") { return float4(uv, sin(u.time), 1.0) * uv.x; }\n");
    for (const VideoCodec codec : {VideoCodec::prores4444, VideoCodec::hevcAlpha})
        EXPECT_TRUE(movieOf(colors, *device, codec, ColorConversionPlace::gpu) ==
                    movieOf(colors, *device, codec, ColorConversionPlace::writer));
}

} // namespace
} // namespace tarnwick::tests
