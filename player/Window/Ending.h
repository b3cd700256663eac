// Keeps unsaved work when the process is asked to end: by a signal, at the end of the login, or
// because the display is gone.
#pragma once

#include "TarnwickBase/EndSignals.h"
#include "player/App/Player.h"

#include <QObject>
#include <functional>
#include <string>

namespace tarnwick::player {

// On the thread of the windows. The process then ends without questions, and the next player offers
// the drafts. One at a time, a child of the application while it lives.
class Ending : public QObject {
    Q_OBJECT

  public:
    // `say` is called with one sentence, where no window can show it any more.
    Ending(Player& player, std::function<void(const std::string&)> say);
    ~Ending() override;

    bool isBySignal() const { return signals_.arrived(); } // which is to end the process

  private:
    [[noreturn]] void endWithoutDisplay();
    static void hear(QtMsgType type, const QMessageLogContext& context, const QString& message);

    Player& player_;
    std::function<void(const std::string&)> say_;
    HeldSignals signals_;
    QtMessageHandler before_;
};

} // namespace tarnwick::player
