// The actions that play, and those that edit beside the text's own keys.
#pragma once

#include "player/Actions/Actions.h"
#include "player/App/Player.h"

namespace tarnwick::player {

class DocumentTabs;
class TransportBar;

void addEditActions(Player& player, Actions& actions, DocumentTabs& tabs);
void addPlayActions(Actions& actions, TransportBar& transport);

} // namespace tarnwick::player
