// The commands of the keys panel: their keys and the context menu.
#pragma once

#include "player/KeysPanel/KeysEditor.h"

class QKeyEvent;
class QMenu;

namespace tarnwick::player {

// Whether the keys panel uses the key.
bool isKeyCommand(const QKeyEvent& event);
// Runs the command of the key; false without one.
bool runKeyCommand(const QKeyEvent& event, KeysEditor& editor, KeysView& view);
void fillKeysMenu(QMenu& menu, KeysEditor& editor, KeysView& view);

} // namespace tarnwick::player
