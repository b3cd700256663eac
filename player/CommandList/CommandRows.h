// The rows of the command list and of the list of shortcuts.
#pragma once

#include "player/Actions/Actions.h"

#include <QMainWindow>
#include <QPointer>
#include <QString>
#include <vector>

class QAction;

namespace tarnwick::player {

struct CommandRow {
    QPointer<QAction> action;
    QString text;     // without marks of mnemonics and dots: "Save as"
    QString menu;     // "File" or "View > Preview scale"
    QString shortcut; // as the desktop writes it; may be empty
};

// Of all actions, in the order of the menus.
std::vector<CommandRow> commandRows(const Actions& actions);
// Those that fit the query, the best first; an empty query: all.
std::vector<CommandRow> fitting(std::vector<CommandRow> rows, const QString& query);

} // namespace tarnwick::player
