#include "player/Window/PlayActions.h"

#include "player/Editor/EpisodeEditor.h"
#include "player/Editor/FindBar.h"
#include "player/Panels/TransportBar.h"
#include "player/Window/DocumentTabs.h"

namespace tarnwick::player {

void addEditActions(Player& player, Actions& actions, DocumentTabs& tabs) {
    const auto edit = ActionMenu::edit;
    FindBar* find = &tabs.find();
    actions.add(edit, Actions::tr("&Find and replace"), QKeySequence::Find,
                [find] { find->find(); });
    actions.add(edit, Actions::tr("Find &next"), QKeySequence::FindNext,
                [find] { find->findNext(); });
    actions.add(edit, Actions::tr("Find &previous"), QKeySequence::FindPrevious,
                [find] { find->findPrevious(); });
    actions.add(edit, Actions::tr("&Go to line"), QKeySequence(Actions::tr("Ctrl+G")),
                [find] { find->goToLine(); });
    actions.separate(edit);
    actions.add(edit, Actions::tr("&Toggle comment"), QKeySequence(Actions::tr("Ctrl+/")), [&tabs] {
        if (EpisodeEditor* shown = tabs.editor())
            shown->toggleComments();
    });
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
    actions.add(play, Actions::tr("&Play or pause"), QKeySequence(Actions::tr("Ctrl+Space")),
                [bar] { bar->togglePlaying(); });
    actions.add(play, Actions::tr("Step &forward"), QKeySequence(Actions::tr("Ctrl+Right")),
                [bar] { bar->stepForward(); });
    actions.add(play, Actions::tr("Step &back"), QKeySequence(Actions::tr("Ctrl+Left")),
                [bar] { bar->stepBack(); });
    actions.add(play, Actions::tr("&Restart"), QKeySequence(Actions::tr("Ctrl+Home")),
                [bar] { bar->restart(); });
}

} // namespace tarnwick::player
