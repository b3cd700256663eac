// Keys on the desktop's clipboard, as the JSON text of tracks.
#pragma once

#include "player/Keys/KeyEdits.h"

#include <optional>

namespace tarnwick::player {

void putOnClipboard(const CopiedKeys& keys);
// Nothing if the clipboard has no keys. Keys in any text are accepted.
std::optional<CopiedKeys> keysOfClipboard();

} // namespace tarnwick::player
