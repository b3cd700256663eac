// The sharing service: account, sharing, links.
#pragma once

#include "player/Actions/Actions.h"
#include "player/App/Player.h"
#include "player/Sharing/LinkOpener.h"

#include <QMainWindow>

namespace tarnwick::player {

class SharingFeature : public QObject {
    Q_OBJECT

  public:
    SharingFeature(Player& player, QMainWindow& window, Actions& actions);

    LinkOpener& links() { return links_; }

  private:
    void share();
    void openLink();

    Player& player_;
    QMainWindow& window_;
    LinkOpener links_;
};

} // namespace tarnwick::player
