#include "TarnwickPlatform/Movie/ColorConversion.h"
#include "tests/TarnwickPlatform/Movie/SmallMovie.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace tarnwick {
namespace {

// A picture's colours in double precision, straight from the definition.
class Reference {
  public:
    Reference(const PixelBuffer& pixels, PixelFormat format)
        : pixels(pixels), shape(planeShapes(format)[1]),
          scale(planeShapes(format)[0].bytesPerSample == 2 ? 4 : 1) {}

    double value(std::size_t plane, std::int64_t x, std::int64_t y) const {
        if (plane == 0)
            return scale * (16 + 219 * luma(color(x, y)) / 255);
        if (plane == 3)
            return scale == 4 ? std::floor(color(x, y)[3] * 4 + color(x, y)[3] / 64)
                              : color(x, y)[3];
        const Color mean = chromaColor(x, y);
        const double difference =
            plane == 1 ? (mean[0] - luma(mean)) / 1.8556 : (mean[2] - luma(mean)) / 1.5748;
        return scale * (128 + 224 * difference / 255);
    }

  private:
    using Color = std::array<double, 4>;

    static double luma(const Color& color) {
        return 0.0722 * color[0] + 0.7152 * color[1] + 0.2126 * color[2];
    }

    Color color(std::int64_t x, std::int64_t y) const {
        x = std::clamp<std::int64_t>(x, 0, pixels.width() - 1);
        y = std::clamp<std::int64_t>(y, 0, pixels.height() - 1);
        const std::byte* pixel =
            pixels.plane(0) + y * pixels.layout().planes[0].bytesPerRow + 4 * x;
        return {static_cast<double>(pixel[0]), static_cast<double>(pixel[1]),
                static_cast<double>(pixel[2]), static_cast<double>(pixel[3])};
    }

    Color chromaColor(std::int64_t x, std::int64_t y) const {
        if (shape.across == 1)
            return color(x, y);
        Color mean{};
        for (std::int64_t down = 0; down < shape.down; ++down)
            for (std::int64_t across = -1; across <= 1; ++across) {
                const Color one = color(2 * x + across, shape.down * y + down);
                const double weight = (across == 0 ? 0.5 : 0.25) / static_cast<double>(shape.down);
                for (std::size_t c = 0; c < 4; ++c)
                    mean[c] += weight * one[c];
            }
        return mean;
    }

    const PixelBuffer& pixels;
    const PlaneShape shape;
    const double scale;
};

class ColorConversion : public testing::TestWithParam<PixelFormat> {};

INSTANTIATE_TEST_SUITE_P(All, ColorConversion,
                         testing::Values(PixelFormat::ycbcr420, PixelFormat::ycbcr422x10,
                                         PixelFormat::ycbcra444x10, PixelFormat::ycbcra420));

TEST_P(ColorConversion, roundsTheDefinitionToTheNearestCode) {
    VideoSettings settings = smallVideo(VideoCodec::h264);
    settings.width = 254; // not a whole number of the processor's vectors
    settings.height = 66;
    for (const Content content : {Content::noise, Content::moving, Content::corners}) {
        const auto pixels = drawnPicture(settings, 3, content);
        const auto converted = PixelBufferPool(GetParam(), 254, 66, 1).take();
        convertColors(*pixels, *converted);
        const Reference reference(*pixels, GetParam());
        double worst = 0;
        for (std::size_t plane = 0; plane < planeShapes(GetParam()).size(); ++plane) {
            const std::int64_t width = converted->layout().planes[plane].width;
            std::int64_t at = 0;
            for (const int sample : samplesOf(*converted, plane)) {
                worst = std::max(worst,
                                 std::abs(sample - reference.value(plane, at % width, at / width)));
                ++at;
            }
        }
        EXPECT_LE(worst, 0.51) << static_cast<int>(content);
    }
}

} // namespace
} // namespace tarnwick
