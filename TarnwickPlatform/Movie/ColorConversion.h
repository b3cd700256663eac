// From the pixels that are drawn to the Y'CbCr that encoders take.
//
// What is computed, before rounding to the nearest code value (R, G, B in [0, 255], n bits):
//
//   Y' = 2^(n-8) * (16 + 219 * E'Y),  E'Y = (0.2126 R + 0.7152 G + 0.0722 B) / 255
//   Cb = 2^(n-8) * (128 + 224 * (B / 255 - E'Y) / 1.8556)
//   Cr = 2^(n-8) * (128 + 224 * (R / 255 - E'Y) / 1.5748)
//
// (Rec. ITU-R BT.709-6, 3 and 4, in video range.) Where chroma has half the width it is sited left:
// on the columns 0, 2, 4, ..., each the sum of its neighbours in the weights 1/4, 1/2, 1/4, the
// picture's edge repeated. Where it has half the height it is sited between rows 2i and 2i + 1 and
// is their mean. Alpha keeps its 8 bits; of 10 bits the two lowest repeat the two highest.
#pragma once

#include "TarnwickPlatform/Movie/PixelBuffer.h"

namespace tarnwick {

// Fills `converted`, of any format but bgra, with the pixels of `pixels`, of format bgra and the
// same size. Exact to within half a code value and 0.01; the same bytes on every machine.
void convertColors(const PixelBuffer& pixels, const PixelBuffer& converted);

} // namespace tarnwick
