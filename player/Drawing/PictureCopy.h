// Copies the picture that a scene drew into memory.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickPlatform/Pictures/Picture.h"

#include <optional>

namespace tarnwick::player {

// `texture` has the format ShaderProgram::pixelFormat. Absent if the device fails. Blocks.
std::optional<Picture> copyOf(const gpu::Texture& texture, gpu::Device& device,
                              gpu::CommandQueue& queue);

} // namespace tarnwick::player
