// The actions of the variations and of the snapshots.
#pragma once

#include "player/Actions/Actions.h"

namespace tarnwick::player {

class VariationsPanel;

void addVariationsActions(Actions& actions, VariationsPanel& panel);

} // namespace tarnwick::player
