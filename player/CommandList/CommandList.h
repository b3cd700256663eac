// Finds an action by a few letters of its name and runs it.
#pragma once

#include "player/CommandList/CommandRows.h"

#include <QDialog>

class QLineEdit;
class QTreeWidget;

namespace tarnwick::player {

class CommandList : public QDialog {
    Q_OBJECT

  public:
    CommandList(const Actions& actions, QWidget* parent);

    // With the actions of now. Those that ran last are first until something is typed.
    void open() override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void showRows();
    void runCurrent();

    const Actions& actions_;
    std::vector<CommandRow> rows_;
    std::vector<QPointer<QAction>> last_; // that ran, the newest first
    QLineEdit* query_;
    QTreeWidget* list_;
};

} // namespace tarnwick::player
