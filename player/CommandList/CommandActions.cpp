#include "player/CommandList/CommandActions.h"

#include "TarnwickBase/InstalledFiles.h"
#include "player/CommandList/CommandList.h"
#include "player/CommandList/ShortcutList.h"

#include <QAction>
#include <QDesktopServices>
#include <QMainWindow>
#include <QUrl>
#include <filesystem>
#include <system_error>

namespace tarnwick::player {
namespace {

// In the browser; a handbook that is not installed is absent from the menu.
void addHandbook(Actions& actions) {
    const std::filesystem::path page = installedFile(InstalledFile::handbook);
    std::error_code error;
    if (std::filesystem::exists(page, error))
        actions.add(ActionMenu::help, Actions::tr("&Handbook"), {}, [page] {
            QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(page.string())));
        });
}

} // namespace

void addCommandActions(QMainWindow& window, Actions& actions) {
    auto* commands = new CommandList(actions, &window);
    auto* shortcuts = new ShortcutList(actions, &window);
    actions.add(ActionMenu::help, Actions::tr("&Commands..."),
                QKeySequence(Actions::tr("Ctrl+Shift+P")), [commands] { commands->open(); });
    // A field of text takes a plain letter before the shortcut does.
    QAction* list = actions.add(ActionMenu::help, Actions::tr("&Keyboard shortcuts..."), {},
                                [shortcuts] { shortcuts->open(); });
    list->setShortcuts({QKeySequence(Qt::Key_F1), QKeySequence(Qt::Key_Question)});
    addHandbook(actions);
}

} // namespace tarnwick::player
