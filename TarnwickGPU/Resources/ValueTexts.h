// How violations print textures and their regions.
#pragma once

#include "TarnwickGPU/Format.h"

#include <string>

namespace tarnwick::gpu {

std::string valueText(const Region& region);                // "16,0 640x480", "0,0,4 8x8x2"
std::string valueText(const TextureDescriptor& descriptor); // "320x240", "8x8x8 of 4 levels"

} // namespace tarnwick::gpu
