// The figures of the live picture as text.
#pragma once

#include "player/App/Player.h"

#include <QString>

namespace tarnwick::player {

// Lines: frames, picture, device, particles, memory, compiling.
QString liveFigures(const Player& player);

} // namespace tarnwick::player
