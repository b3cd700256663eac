// The command list and the list of shortcuts in the window.
#pragma once

#include "player/Actions/Actions.h"

class QMainWindow;

namespace tarnwick::player {

// Adds both to the help menu. `?` shows the shortcuts unless a field of text has the focus.
void addCommandActions(QMainWindow& window, Actions& actions);

} // namespace tarnwick::player
