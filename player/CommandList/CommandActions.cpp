#include "player/CommandList/CommandActions.h"

#include "player/CommandList/CommandList.h"
#include "player/CommandList/ShortcutList.h"

#include <QAction>
#include <QMainWindow>

namespace tarnwick::player {

void addCommandActions(QMainWindow& window, Actions& actions) {
    auto* commands = new CommandList(actions, &window);
    auto* shortcuts = new ShortcutList(actions, &window);
    actions.add(ActionMenu::help, Actions::tr("&Commands..."),
                QKeySequence(Actions::tr("Ctrl+Shift+P")), [commands] { commands->open(); });
    // A field of text takes a plain letter before the shortcut does.
    QAction* list = actions.add(ActionMenu::help, Actions::tr("&Keyboard shortcuts..."), {},
                                [shortcuts] { shortcuts->open(); });
    list->setShortcuts({QKeySequence(Qt::Key_F1), QKeySequence(Qt::Key_Question)});
}

} // namespace tarnwick::player
