// Pictures as Qt's images.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"

#include <QImage>

namespace tarnwick::player {

// An opaque copy.
inline QImage imageOf(const Picture& picture) {
    return QImage(picture.bytes.data(), static_cast<int>(picture.width),
                  static_cast<int>(picture.height), static_cast<qsizetype>(picture.bytesPerRow),
                  QImage::Format_RGB32)
        .copy();
}

} // namespace tarnwick::player
