#include "player/KeysPanel/KeysActions.h"

#include "player/KeysPanel/KeysPanel.h"

#include <QAction>
#include <utility>

namespace tarnwick::player {

void addKeysActions(Actions& actions, KeysPanel& panel, std::function<void()> show) {
    const auto add = [&](const QString& text, const char* keys, std::function<void()> run) {
        return actions.add(ActionMenu::play, text, QKeySequence(Actions::tr(keys)), std::move(run));
    };
    KeysEditor* editor = &panel.editor();
    KeysView* view = &panel.view();
    actions.separate(ActionMenu::play);
    add(Actions::tr("Ed&it keys"), "Ctrl+Shift+K", [&panel, show = std::move(show)] {
        show();
        panel.takeFocus();
    });
    add(Actions::tr("Ne&xt key"), "Alt+PgDown", [editor] { editor->jump(Direction::forward); });
    add(Actions::tr("Pre&vious key"), "Alt+PgUp", [editor] { editor->jump(Direction::back); });
    add(Actions::tr("Add &key of the parameter"), "Ctrl+Alt+K", [editor] { editor->addKey(); });
    add(Actions::tr("Add keys of all para&meters"), "Ctrl+Alt+Shift+K",
        [editor] { editor->addKeysForAll(); });
    QAction* follow = add(Actions::tr("Keys follow the playhea&d"), "", [] {});
    follow->setCheckable(true);
    QObject::connect(follow, &QAction::toggled, view, [view](bool isOn) {
        if (isOn != view->follows())
            view->setFollows(isOn);
    });
    QObject::connect(view, &KeysView::changed, follow,
                     [follow, view] { follow->setChecked(view->follows()); });
}

} // namespace tarnwick::player
