// Converts drawn pixels to the Y'CbCr that encoders take.
//
// The values before rounding to the nearest code value (R, G, B in [0, 255], n bits):
//
//   Y' = 2^(n-8) * (16 + 219 * E'Y),  E'Y = (0.2126 R + 0.7152 G + 0.0722 B) / 255
//   Cb = 2^(n-8) * (128 + 224 * (B / 255 - E'Y) / 1.8556)
//   Cr = 2^(n-8) * (128 + 224 * (R / 255 - E'Y) / 1.5748)
//
// (Rec. ITU-R BT.709-6, 3 and 4, in video range.) Chroma of half the width is sited left: a sample
// is at column 0, 2, 4, ... and is the sum of three neighbours with the weights 1/4, 1/2, 1/4; the
// picture's edge is repeated. Chroma of half the height is sited between rows 2i and 2i + 1 and is
// their mean. Alpha of 8 bits is kept; the two lowest of 10 bits repeat the two highest.
#pragma once

#include "TarnwickPlatform/Movie/PixelBuffer.h"

namespace tarnwick {

// Fills `converted`, of any format but bgra, from `pixels`, which is bgra and of the same size. The
// error is at most 0.51 code values; the bytes are the same on every machine.
void convertColors(const PixelBuffer& pixels, const PixelBuffer& converted);

} // namespace tarnwick
