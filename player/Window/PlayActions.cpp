#include "player/Window/PlayActions.h"

#include "player/Editor/EpisodeEditor.h"
#include "player/Editor/FindBar.h"
#include "player/Panels/TransportBar.h"
#include "player/Window/DocumentTabs.h"

#include <QAction>
#include <functional>

namespace tarnwick::player {
namespace {

template <typename Run> std::function<void()> inEditor(DocumentTabs& tabs, Run run) {
    return [&tabs, run] {
        if (EpisodeEditor* shown = tabs.editor())
            (shown->*run)();
    };
}

// The editor and other fields handle these keys themselves; the menu only shows them.
void addTextActions(Actions& actions, DocumentTabs& tabs) {
    const auto add = [&](const QString& text, const QString& keys, auto run) {
        actions.add(ActionMenu::edit, text, QKeySequence(keys), inEditor(tabs, run))
            ->setShortcutContext(Qt::WidgetShortcut);
    };
    add(Actions::tr("&Undo"), Actions::tr("Ctrl+Z"), &EpisodeEditor::undo);
    add(Actions::tr("&Redo"), Actions::tr("Ctrl+Shift+Z"), &EpisodeEditor::redo);
    actions.separate(ActionMenu::edit);
    add(Actions::tr("Cu&t"), Actions::tr("Ctrl+X"), &EpisodeEditor::cut);
    add(Actions::tr("&Copy"), Actions::tr("Ctrl+C"), &EpisodeEditor::copy);
    add(Actions::tr("&Paste"), Actions::tr("Ctrl+V"), &EpisodeEditor::paste);
    actions.separate(ActionMenu::edit);
}

} // namespace

void addEditActions(Player& player, Actions& actions, DocumentTabs& tabs) {
    const auto edit = ActionMenu::edit;
    FindBar* find = &tabs.find();
    addTextActions(actions, tabs);
    actions.add(edit, Actions::tr("&Find and replace"), QKeySequence(Actions::tr("Ctrl+F")),
                [find] { find->find(); });
    actions.add(edit, Actions::tr("Find &next"), QKeySequence(Actions::tr("F3")),
                [find] { find->findNext(); });
    actions.add(edit, Actions::tr("Find pre&vious"), QKeySequence(Actions::tr("Shift+F3")),
                [find] { find->findPrevious(); });
    actions.add(edit, Actions::tr("&Go to line"), QKeySequence(Actions::tr("Ctrl+G")),
                [find] { find->goToLine(); });
    actions.separate(edit);
    actions.add(edit, Actions::tr("Toggle c&omment"), QKeySequence(Actions::tr("Ctrl+/")),
                inEditor(tabs, &EpisodeEditor::toggleComments));
    actions.add(edit, Actions::tr("Co&mplete the word"), QKeySequence(Actions::tr("Ctrl+Space")),
                inEditor(tabs, &EpisodeEditor::complete));
    actions.add(edit, Actions::tr("&Help for the function"),
                QKeySequence(Actions::tr("Ctrl+Shift+Space")),
                inEditor(tabs, &EpisodeEditor::showFunction));
    actions.add(edit, Actions::tr("Ne&xt problem"), QKeySequence(Actions::tr("F8")),
                inEditor(tabs, &EpisodeEditor::goToNextProblem));
    actions.separate(edit);
    actions.add(edit, Actions::tr("Undo &setting"), QKeySequence(Actions::tr("Ctrl+Alt+Z")),
                [&player] {
                    if (OpenDocument* document = player.active())
                        document->undoSettings();
                });
    actions.add(edit, Actions::tr("Redo s&etting"), QKeySequence(Actions::tr("Ctrl+Alt+Shift+Z")),
                [&player] {
                    if (OpenDocument* document = player.active())
                        document->redoSettings();
                });
}

void addPlayActions(Actions& actions, TransportBar& transport) {
    const auto play = ActionMenu::play;
    TransportBar* bar = &transport;
    actions.add(play, Actions::tr("&Play or pause"), QKeySequence(Actions::tr("F5")),
                [bar] { bar->togglePlaying(); });
    actions.add(play, Actions::tr("Step &forward"), {}, [bar] { bar->stepForward(); })
        ->setShortcuts(
            {QKeySequence(Actions::tr("Alt+Right")), QKeySequence(Actions::tr("Ctrl+Right"))});
    actions.add(play, Actions::tr("Step &back"), {}, [bar] { bar->stepBack(); })
        ->setShortcuts(
            {QKeySequence(Actions::tr("Alt+Left")), QKeySequence(Actions::tr("Ctrl+Left"))});
    actions.add(play, Actions::tr("&Restart"), {}, [bar] { bar->restart(); })
        ->setShortcuts(
            {QKeySequence(Actions::tr("Alt+Home")), QKeySequence(Actions::tr("Ctrl+Home"))});
    actions.separate(play);
    const auto loop = [&](const QString& text, const char* keys, const char* letter,
                          void (TransportBar::*run)()) {
        QAction* action = actions.add(play, text, {}, [bar, run] { (bar->*run)(); });
        // The letter is for the window without a field of text that has the focus.
        action->setShortcuts({QKeySequence(Actions::tr(keys)), QKeySequence(Actions::tr(letter))});
    };
    loop(Actions::tr("Loop starts &here"), "Ctrl+Alt+I", "I", &TransportBar::setLoopStart);
    loop(Actions::tr("Loop &ends here"), "Ctrl+Alt+O", "O", &TransportBar::setLoopEnd);
    loop(Actions::tr("&Loop"), "Ctrl+Alt+W", "L", &TransportBar::toggleLoop);
    actions.add(play, Actions::tr("Clear loop ran&ge"), QKeySequence(Actions::tr("Ctrl+Alt+X")),
                [bar] { bar->clearLoop(); });
}

} // namespace tarnwick::player
