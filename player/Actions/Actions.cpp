#include "player/Actions/Actions.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <algorithm>
#include <utility>

namespace tarnwick::player {

Actions::Actions(QMainWindow& window) : QObject(&window), window_(window) {
    const std::array<QString, actionMenuCount> titles{
        tr("&File"), tr("&Edit"), tr("&Play"), tr("&View"), tr("&Live"), tr("&Share"), tr("&Help")};
    for (std::size_t index = 0; index < actionMenuCount; index++) {
        menus_[index] = window_.menuBar()->addMenu(titles[index]);
        menus_[index]->menuAction()->setVisible(false);
    }
}

QAction* Actions::add(ActionMenu where, const QString& text, const QKeySequence& keys,
                      std::function<void()> run) {
    auto* action = new QAction(text, this);
    action->setShortcut(keys);
    connect(action, &QAction::triggered, this, std::move(run));
    add(where, action);
    return action;
}

void Actions::add(ActionMenu where, QAction* action) {
    menu(where)->addAction(action);
    menu(where)->menuAction()->setVisible(true);
    keep(action);
}

QMenu* Actions::submenu(ActionMenu where, const QString& title) {
    menu(where)->menuAction()->setVisible(true);
    return menu(where)->addMenu(title);
}

QAction* Actions::add(QMenu* submenu, const QString& text, std::function<void()> run) {
    QAction* action = submenu->addAction(text);
    connect(action, &QAction::triggered, this, std::move(run));
    keep(action);
    return action;
}

void Actions::separate(ActionMenu where) {
    menu(where)->addSeparator();
}

std::vector<QAction*> Actions::all() const {
    return all_;
}

void Actions::keep(QAction* action) {
    all_.push_back(action);
    connect(action, &QObject::destroyed, this, [this, action] { std::erase(all_, action); });
}

} // namespace tarnwick::player
