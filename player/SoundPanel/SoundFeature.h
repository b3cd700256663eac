// The sound in the window's menus, its status bar and a dock.
#pragma once

#include "player/Actions/Actions.h"
#include "player/App/Player.h"

class QMainWindow;

namespace tarnwick::player {

// Adds the SoundControls of the player, a child of the window, with actions in the menu Live, the
// volume in the status bar and a hidden dock.
void addSound(Player& player, QMainWindow& window, Actions& actions);

} // namespace tarnwick::player
