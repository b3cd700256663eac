// Pictures in the JPEG format (Rec. ITU-T T.81), with the header of JFIF (Rec. ITU-T T.871).
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"

#include <string>

namespace tarnwick {

// The bytes of a JPEG file. `quality` is the IJG's, [1, 100]; below 90 chroma has half the
// resolution in both directions. JFIF cannot say sRGB; readers assume it. Empty if the picture has
// no pixels or more than 65,500 on a side, or there is not enough memory. Blocks.
std::string jpegOf(const Picture& picture, int quality);

} // namespace tarnwick
