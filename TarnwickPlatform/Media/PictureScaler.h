// Decoded frames as pictures.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"

#include <cstdint>

struct AVFrame;
struct SwsContext;

namespace tarnwick {

// One thread at a time.
class PictureScaler {
  public:
    explicit PictureScaler(std::uint32_t longestSide) : longestSide_(longestSide) {}
    ~PictureScaler();
    PictureScaler(const PictureScaler&) = delete;
    PictureScaler& operator=(const PictureScaler&) = delete;

    // Converts to BGRA with straight alpha, scaled down to the longest side, and turned by
    // `quarterTurns` clockwise. False if the frame cannot be converted.
    bool convert(const AVFrame& frame, int quarterTurns, Picture& picture);

  private:
    std::uint32_t longestSide_;
    SwsContext* context_ = nullptr;
    Picture unturned_;
};

} // namespace tarnwick
