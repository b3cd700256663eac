// Makes pictures of half the size.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"

namespace tarnwick {

// Each pixel is the mean of two by two pixels; an odd last row or column is left out.
Picture halved(const Picture& picture);

} // namespace tarnwick
