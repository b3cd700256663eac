// The sharing service: account, sharing, links.
#pragma once

#include "player/Actions/Actions.h"
#include "player/App/Player.h"
#include "player/Exports/EpisodeOrders.h"
#include "player/Sharing/LinkOpener.h"

#include <QMainWindow>
#include <functional>

namespace tarnwick::player {

class SharingFeature : public QObject {
    Q_OBJECT

  public:
    using CopyOf = std::function<EpisodeCopy(const OpenDocument&)>; // with inputs

    SharingFeature(Player& player, QMainWindow& window, Actions& actions, CopyOf copyOf);

    LinkOpener& links() { return links_; }

  private:
    void share();
    void openLink();

    Player& player_;
    QMainWindow& window_;
    CopyOf copyOf_;
    LinkOpener links_;
};

} // namespace tarnwick::player
