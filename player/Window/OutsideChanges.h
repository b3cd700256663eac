// What the player does when another program saves or removes the file of an open episode.
#pragma once

#include "player/Actions/Actions.h"
#include "player/App/Player.h"

#include <QMainWindow>
#include <QPointer>
#include <functional>
#include <map>

namespace tarnwick::player {

class DifferenceDialog;

class OutsideChanges : public QObject {
    Q_OBJECT

  public:
    OutsideChanges(Player& player, QMainWindow& window, Actions& actions);

    // Whether the file of the document may be written. If another program saved it meanwhile, the
    // author is asked first; `write` runs if this text is kept.
    bool mayWrite(OpenDocument* document, const std::function<void()>& write);

  private:
    void watch(OpenDocument* document);
    void ask(OpenDocument* document, const std::function<void()>& afterKeeping = {});
    void take(OpenDocument* document);
    void compareWithFile();

    Player& player_;
    QMainWindow& window_;
    std::map<OpenDocument*, QPointer<DifferenceDialog>> dialogs_;
};

} // namespace tarnwick::player
