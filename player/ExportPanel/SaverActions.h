// Saves the active document as a screen saver.
#pragma once

#include "player/Actions/Actions.h"
#include "player/App/Player.h"

#include <QMainWindow>
#include <filesystem>

namespace tarnwick::player {

class SaverActions : public QObject {
    Q_OBJECT

  public:
    SaverActions(Player& player, QMainWindow& window, Actions& actions);

  private:
    void save();
    void showSaved(const std::filesystem::path& bundle);

    Player& player_;
    QMainWindow& window_;
};

} // namespace tarnwick::player
