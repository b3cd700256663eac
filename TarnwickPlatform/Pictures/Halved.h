// Pictures at half their size.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"

namespace tarnwick {

// Each pixel the mean of two by two; an odd last row or column is left out.
Picture halved(const Picture& picture);

} // namespace tarnwick
