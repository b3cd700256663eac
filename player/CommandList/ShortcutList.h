// All shortcuts in a dialog.
#pragma once

#include "player/Actions/Actions.h"

#include <QDialog>

class QTreeWidget;

namespace tarnwick::player {

class ShortcutList : public QDialog {
    Q_OBJECT

  public:
    ShortcutList(const Actions& actions, QWidget* parent);

    void open() override; // with the actions of now

  private:
    const Actions& actions_;
    QTreeWidget* list_;
};

} // namespace tarnwick::player
