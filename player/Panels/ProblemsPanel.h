// The errors and warnings of the active episode.
#pragma once

#include "player/App/Player.h"

#include <QTreeWidget>

namespace tarnwick::player {

class ProblemsPanel : public QTreeWidget {
    Q_OBJECT

  public:
    explicit ProblemsPanel(Player& player, QWidget* parent = nullptr);

  signals:
    // A problem was chosen; line and column count from 1.
    void chosen(int line, int column);

  private:
    void follow();
    void rebuild();

    Player& player_;
    OpenDocument* document_ = nullptr;
};

} // namespace tarnwick::player
