// The actions of the keys panel.
#pragma once

#include "player/Actions/Actions.h"

#include <functional>

namespace tarnwick::player {

class KeysPanel;

// `show` brings the panel to the front.
void addKeysActions(Actions& actions, KeysPanel& panel, std::function<void()> show);

} // namespace tarnwick::player
