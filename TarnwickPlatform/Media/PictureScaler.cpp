#include "TarnwickPlatform/Media/PictureScaler.h"

#include "TarnwickPlatform/Libav/Libav.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace tarnwick {
namespace {

constexpr int smallestHD = 720; // lines from which unmarked movies have the colours of BT.709

struct Side {
    int width, height;
};

Side fitted(int width, int height, std::uint32_t longestSide) {
    const int longest = std::max(width, height);
    const int limit = static_cast<int>(longestSide);
    if (longest <= limit)
        return {width, height};
    const auto scaled = [&](int side) {
        return std::max(static_cast<int>(std::int64_t{side} * limit / longest), 1);
    };
    return {scaled(width), scaled(height)};
}

int matrixOf(const AVFrame& frame) {
    if (frame.colorspace != AVCOL_SPC_UNSPECIFIED)
        return frame.colorspace;
    return frame.height >= smallestHD ? SWS_CS_ITU709 : SWS_CS_ITU601;
}

// The formats of JPEG have full range by their name.
bool hasFullRange(const AVFrame& frame) {
    const auto format = static_cast<AVPixelFormat>(frame.format);
    return frame.color_range == AVCOL_RANGE_JPEG || format == AV_PIX_FMT_YUVJ420P ||
           format == AV_PIX_FMT_YUVJ422P || format == AV_PIX_FMT_YUVJ444P ||
           format == AV_PIX_FMT_YUVJ440P;
}

void resize(Picture& picture, int width, int height) {
    picture.width = static_cast<std::uint32_t>(width);
    picture.height = static_cast<std::uint32_t>(height);
    picture.bytesPerRow = std::size_t{4} * picture.width;
    picture.bytes.resize(picture.bytesPerRow * picture.height);
}

void turnInto(Picture& turned, const Picture& picture, int quarterTurns) {
    const std::size_t width = picture.width, height = picture.height;
    const bool isOnSide = quarterTurns % 2 != 0;
    resize(turned, static_cast<int>(isOnSide ? height : width),
           static_cast<int>(isOnSide ? width : height));
    for (std::size_t y = 0; y < height; ++y)
        for (std::size_t x = 0; x < width; ++x) {
            const auto [toX, toY] = quarterTurns == 1   ? std::pair(height - 1 - y, x)
                                    : quarterTurns == 2 ? std::pair(width - 1 - x, height - 1 - y)
                                                        : std::pair(y, width - 1 - x);
            std::memcpy(&turned.bytes[toY * turned.bytesPerRow + 4 * toX],
                        &picture.bytes[y * picture.bytesPerRow + 4 * x], 4);
        }
}

} // namespace

PictureScaler::~PictureScaler() {
    libav().sws_freeContext(context_);
}

bool PictureScaler::convert(const AVFrame& frame, int quarterTurns, Picture& picture) {
    if (frame.width < 1 || frame.height < 1)
        return false;
    const Side size = fitted(frame.width, frame.height, longestSide_);
    context_ = libav().sws_getCachedContext(
        context_, frame.width, frame.height, static_cast<AVPixelFormat>(frame.format), size.width,
        size.height, AV_PIX_FMT_BGRA, SWS_BILINEAR | SWS_ACCURATE_RND, nullptr, nullptr, nullptr);
    if (context_ == nullptr)
        return false;
    constexpr int one = 1 << 16; // of contrast and saturation, in 16.16 fixed point
    libav().sws_setColorspaceDetails(context_, libav().sws_getCoefficients(matrixOf(frame)),
                                     hasFullRange(frame),
                                     libav().sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, one, one);
    Picture& target = quarterTurns == 0 ? picture : unturned_;
    resize(target, size.width, size.height);
    const std::array<std::uint8_t*, 4> planes{target.bytes.data()};
    const std::array<int, 4> strides{static_cast<int>(target.bytesPerRow)};
    if (libav().sws_scale(context_, frame.data, frame.linesize, 0, frame.height, planes.data(),
                          strides.data()) < 0)
        return false;
    if (quarterTurns != 0)
        turnInto(picture, unturned_, quarterTurns);
    return true;
}

} // namespace tarnwick
