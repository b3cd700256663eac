#include "TarnwickPlatform/Movie/ColorConversion.h"

#include "TarnwickBase/Precondition.h"
#include "TarnwickPlatform/Movie/ColorWeights.h"

#include <algorithm>
#include <vector>

namespace tarnwick {

namespace {

// The compiler vectorises the loops below, with wide vectors where the processor has them. All
// numbers are integers, so both give the same result. The choice runs before a sanitizer has begun.
#if defined(__x86_64__) && defined(__gnu_linux__) && !defined(__SANITIZE_ADDRESS__) &&             \
    !defined(__SANITIZE_THREAD__)
#define TARNWICK_WIDE_TOO __attribute__((target_clones("avx2", "default")))
#else
#define TARNWICK_WIDE_TOO
#endif

constexpr std::uint32_t blueAndRed(std::uint32_t pixel) {
    return pixel & 0x00ff00ffU;
}
constexpr std::uint32_t greenAndAlpha(std::uint32_t pixel) {
    return (pixel >> 8) & 0x00ff00ffU;
}

// Takes the sums of blue and red in the halves of one word, and those of green and alpha in
// another.
template <typename Sample>
inline Sample weighted(std::uint32_t blueRed, std::uint32_t greenAlpha, ColorWeights weights) {
    const auto blue = static_cast<std::int32_t>(blueRed & 0xffffU);
    const auto red = static_cast<std::int32_t>(blueRed >> 16);
    const auto green = static_cast<std::int32_t>(greenAlpha & 0xffffU);
    return static_cast<Sample>(
        (weights.blue * blue + weights.green * green + weights.red * red + weights.offset) >>
        ColorWeights::fractionBits);
}

template <typename Sample>
[[gnu::always_inline]] inline void fullRow(const std::uint32_t* __restrict pixels,
                                           Sample* __restrict row, std::int64_t width,
                                           ColorWeights weights) {
    for (std::int64_t x = 0; x < width; ++x)
        row[x] = weighted<Sample>(blueAndRed(pixels[x]), greenAndAlpha(pixels[x]), weights);
}

// Makes chroma of half the width from a row of sums with one more sum at either end.
template <typename Sample>
[[gnu::always_inline]] inline void
halfRow(const std::uint32_t* __restrict blueRed, const std::uint32_t* __restrict greenAlpha,
        Sample* __restrict row, std::int64_t count, ColorWeights weights) {
    for (std::int64_t i = 0; i < count; ++i) {
        const std::int64_t x = 2 * i + 1;
        row[i] =
            weighted<Sample>(blueRed[x - 1] + 2 * blueRed[x] + blueRed[x + 1],
                             greenAlpha[x - 1] + 2 * greenAlpha[x] + greenAlpha[x + 1], weights);
    }
}

TARNWICK_WIDE_TOO void fullRow8(const std::uint32_t* pixels, std::uint8_t* row, std::int64_t width,
                                ColorWeights weights) {
    fullRow(pixels, row, width, weights);
}

TARNWICK_WIDE_TOO void fullRow10(const std::uint32_t* pixels, std::uint16_t* row,
                                 std::int64_t width, ColorWeights weights) {
    fullRow(pixels, row, width, weights);
}

TARNWICK_WIDE_TOO void halfRow8(const std::uint32_t* blueRed, const std::uint32_t* greenAlpha,
                                std::uint8_t* row, std::int64_t count, ColorWeights weights) {
    halfRow(blueRed, greenAlpha, row, count, weights);
}

TARNWICK_WIDE_TOO void halfRow10(const std::uint32_t* blueRed, const std::uint32_t* greenAlpha,
                                 std::uint16_t* row, std::int64_t count, ColorWeights weights) {
    halfRow(blueRed, greenAlpha, row, count, weights);
}

TARNWICK_WIDE_TOO void alphaRow8(const std::uint32_t* __restrict pixels,
                                 std::uint8_t* __restrict row, std::int64_t width) {
    for (std::int64_t x = 0; x < width; ++x)
        row[x] = static_cast<std::uint8_t>(pixels[x] >> 24);
}

TARNWICK_WIDE_TOO void alphaRow10(const std::uint32_t* __restrict pixels,
                                  std::uint16_t* __restrict row, std::int64_t width) {
    for (std::int64_t x = 0; x < width; ++x)
        row[x] = static_cast<std::uint16_t>((pixels[x] >> 22 & ~3U) | pixels[x] >> 30);
}

// Adds up two rows, or the same row twice.
TARNWICK_WIDE_TOO void addRows(const std::uint32_t* __restrict above,
                               const std::uint32_t* __restrict below,
                               std::uint32_t* __restrict blueRed,
                               std::uint32_t* __restrict greenAlpha, std::int64_t width) {
    for (std::int64_t x = 0; x < width; ++x) {
        blueRed[x] = blueAndRed(above[x]) + blueAndRed(below[x]);
        greenAlpha[x] = greenAndAlpha(above[x]) + greenAndAlpha(below[x]);
    }
}

// A row of sums with the picture's edges repeated once on either side.
struct SummedRow {
    std::vector<std::uint32_t> blueRed;
    std::vector<std::uint32_t> greenAlpha;

    explicit SummedRow(std::int64_t width)
        : blueRed(static_cast<std::size_t>(width + 2)),
          greenAlpha(static_cast<std::size_t>(width + 2)) {}

    void add(const std::uint32_t* above, const std::uint32_t* below) {
        addRows(above, below, blueRed.data() + 1, greenAlpha.data() + 1,
                static_cast<std::int64_t>(blueRed.size()) - 2);
        for (std::vector<std::uint32_t>* sums : {&blueRed, &greenAlpha}) {
            sums->front() = (*sums)[1];
            sums->back() = (*sums)[sums->size() - 2];
        }
    }
};

struct Rows {
    const PixelBuffer& buffer;

    template <typename Sample> Sample* at(std::size_t plane, std::int64_t row) const {
        return reinterpret_cast<Sample*>(buffer.plane(plane) +
                                         row * buffer.layout().planes[plane].bytesPerRow);
    }
};

// Visits each row once, while it is in the cache.
void convertTo420(const Rows& pixels, const Rows& converted, bool withAlpha) {
    const std::int64_t width = converted.buffer.width();
    const std::int64_t height = converted.buffer.height();
    const PixelLayout::Plane& chroma = converted.buffer.layout().planes[1];
    constexpr int samples = 2 * 4;
    SummedRow sums(width);
    for (std::int64_t y = 0; y < height; ++y) {
        const auto* row = pixels.at<std::uint32_t>(0, y);
        fullRow8(row, converted.at<std::uint8_t>(0, y), width, lumaWeights(8));
        if (withAlpha)
            alphaRow8(row, converted.at<std::uint8_t>(3, y), width);
        if (y % 2 == 1)
            continue;
        sums.add(row, pixels.at<std::uint32_t>(0, std::min(y + 1, height - 1)));
        halfRow8(sums.blueRed.data(), sums.greenAlpha.data(), converted.at<std::uint8_t>(1, y / 2),
                 chroma.width, blueDifference(8, samples));
        halfRow8(sums.blueRed.data(), sums.greenAlpha.data(), converted.at<std::uint8_t>(2, y / 2),
                 chroma.width, redDifference(8, samples));
    }
}

void convertTo422(const Rows& pixels, const Rows& converted) {
    const std::int64_t width = converted.buffer.width();
    const PixelLayout::Plane& chroma = converted.buffer.layout().planes[1];
    constexpr int samples = 2 * 4; // the row is added to itself
    SummedRow sums(width);
    for (std::int64_t y = 0; y < converted.buffer.height(); ++y) {
        const auto* row = pixels.at<std::uint32_t>(0, y);
        fullRow10(row, converted.at<std::uint16_t>(0, y), width, lumaWeights(10));
        sums.add(row, row);
        halfRow10(sums.blueRed.data(), sums.greenAlpha.data(), converted.at<std::uint16_t>(1, y),
                  chroma.width, blueDifference(10, samples));
        halfRow10(sums.blueRed.data(), sums.greenAlpha.data(), converted.at<std::uint16_t>(2, y),
                  chroma.width, redDifference(10, samples));
    }
}

void convertTo444(const Rows& pixels, const Rows& converted) {
    const std::int64_t width = converted.buffer.width();
    for (std::int64_t y = 0; y < converted.buffer.height(); ++y) {
        const auto* row = pixels.at<std::uint32_t>(0, y);
        fullRow10(row, converted.at<std::uint16_t>(0, y), width, lumaWeights(10));
        fullRow10(row, converted.at<std::uint16_t>(1, y), width, blueDifference(10, 1));
        fullRow10(row, converted.at<std::uint16_t>(2, y), width, redDifference(10, 1));
        alphaRow10(row, converted.at<std::uint16_t>(3, y), width);
    }
}

} // namespace

void convertColors(const PixelBuffer& pixels, const PixelBuffer& converted) {
    precondition(pixels.format() == PixelFormat::bgra && pixels.width() == converted.width() &&
                     pixels.height() == converted.height(),
                 "colours are converted from bgra to a picture of the same size", "format",
                 static_cast<int>(pixels.format()), "width", pixels.width(), "height",
                 pixels.height(), "converted width", converted.width(), "converted height",
                 converted.height());
    switch (converted.format()) {
    case PixelFormat::ycbcr420:
    case PixelFormat::ycbcra420:
        return convertTo420({pixels}, {converted}, converted.format() == PixelFormat::ycbcra420);
    case PixelFormat::ycbcr422x10:
        return convertTo422({pixels}, {converted});
    case PixelFormat::ycbcra444x10:
        return convertTo444({pixels}, {converted});
    case PixelFormat::bgra:
        break;
    }
    precondition(false, "colours are converted to Y'CbCr", "format",
                 static_cast<int>(converted.format()));
}

} // namespace tarnwick
