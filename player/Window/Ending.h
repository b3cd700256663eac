// Keeps unsaved work when the process is asked to end: by a signal, or at the end of the login.
#pragma once

#include "TarnwickBase/EndSignals.h"
#include "player/App/Player.h"

#include <QObject>

namespace tarnwick::player {

// On the thread of the windows. The process then ends without questions, and the next player offers
// the drafts.
class Ending : public QObject {
    Q_OBJECT

  public:
    explicit Ending(Player& player);

  private:
    Player& player_;
    HeldSignals signals_;
};

} // namespace tarnwick::player
