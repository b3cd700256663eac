// The command list, the list of shortcuts and the handbook in the help menu.
#pragma once

#include "player/Actions/Actions.h"

class QMainWindow;

namespace tarnwick::player {

// Adds them to the help menu. `?` shows the shortcuts unless a field of text has the focus.
void addCommandActions(QMainWindow& window, Actions& actions);

} // namespace tarnwick::player
