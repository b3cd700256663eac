// Episodes, folders, JSON and links that are dropped on the window.
#pragma once

#include "player/Dropping/DroppedFiles.h"

namespace tarnwick::player {

// Takes a drag if all its places are such ones. `isLink` tells which addresses are; `open` is
// called with each place.
DropTaker episodeDrops(std::function<bool(const QString& text)> isLink,
                       std::function<void(const QString& place)> open);

} // namespace tarnwick::player
